#include "Services/Model/FileDownload.h"

#include "Concurrency/Cancelled.h"
#include "Concurrency/Clock.h"
#include "Models/ReadableError.h"
#include "Services/Model/CurlTransfer.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// A server that breaks off more often than this for one file is not worth waiting for.
constexpr int maximumResumptions = 10;

[[noreturn]] void fail(const QString &reason)
{
    throw PlatformError(u"Download failed: "_s + reason + u'.');
}

void requireSupportedScheme(const QUrl &url)
{
    const QString scheme = url.scheme();
    if (scheme != "https"_L1 && scheme != "http"_L1 && scheme != "file"_L1)
        fail(u"unsupported URL"_s);
}

} // namespace

std::unique_ptr<PartialFile> FileDownload::fetch(const QUrl &url, const QString &destination,
                                                 const DownloadProgressSink &progressSink,
                                                 const std::stop_token &stop)
{
    requireSupportedScheme(url);
    std::unique_ptr<PartialDownload> download = begin(url, destination);
    if (download->isComplete)
        return std::move(download->file);
    try {
        transfer(*download, progressSink, stop);
    } catch (...) {
        remember(std::move(download));
        throw;
    }
    return std::move(download->file);
}

void FileDownload::keep(const QUrl &url, std::unique_ptr<PartialFile> file)
{
    remember(std::make_unique<PartialDownload>(
        PartialDownload{.url = url, .file = std::move(file), .isComplete = true}));
}

std::unique_ptr<PartialDownload> FileDownload::begin(const QUrl &url, const QString &destination)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_unfinished && m_unfinished->url == url &&
            m_unfinished->file->destination() == destination && m_unfinished->file->isOnDisk())
            return std::move(m_unfinished);
    }
    return std::make_unique<PartialDownload>(
        PartialDownload{.url = url, .file = std::make_unique<PartialFile>(destination)});
}

void FileDownload::remember(std::unique_ptr<PartialDownload> download)
{
    if (!download->canBeResumed())
        return;
    const std::lock_guard lock(m_mutex);
    m_unfinished = std::move(download);
}

void FileDownload::transfer(PartialDownload &download, const DownloadProgressSink &progressSink,
                            const std::stop_token &stop)
{
    QString failure;
    for (int resumptions = 0;; ++resumptions) {
        const qint64 sizeBefore = download.file->size();
        const auto result = CurlTransfer(download, m_timings, progressSink).run(stop);
        if (result.end == CurlTransfer::End::complete)
            return;
        if (result.end == CurlTransfer::End::restRefused) {
            download.file->restart();
            // The answer may be an error page, which must not take the place of a good beginning
            // within one call. What an earlier call left behind is simply fetched anew.
            if (!failure.isEmpty())
                fail(failure);
            continue;
        }
        failure = result.failure;
        const bool hasGrown = download.file->size() > sizeBefore;
        if (!hasGrown || !download.canBeResumed() || resumptions == maximumResumptions)
            fail(failure);
        if (!SystemClock().sleep(m_timings.pauseBeforeResuming, stop))
            throw Cancelled();
    }
}

} // namespace kestrova
