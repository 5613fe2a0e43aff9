#pragma once

#include "Services/Model/DownloadProgress.h"
#include "Services/Model/DownloadTimings.h"
#include "Services/Model/PartialDownload.h"

#include <mutex>
#include <stop_token>

namespace kestrova {

/// Downloads files, and remembers the part that arrived of the last failed or cancelled download,
/// so that the next one of the same address goes on from there. Usable from any thread; downloads
/// do not wait for each other. What it remembers is deleted with it.
class FileDownload
{
public:
    explicit FileDownload(const DownloadTimings &timings = {}) : m_timings(timings) {}

    /// Fetches an http, https or file URL into a temporary file beside the destination. Redirects
    /// are followed, but never from https to http. The status code is not looked at: whatever body
    /// arrives is the file. A transfer that breaks goes on where it broke when the server can do
    /// that. Blocks; called on a worker. Throws PlatformError when the transfer fails or the file
    /// cannot be written, and Cancelled promptly after a stop request.
    std::unique_ptr<PartialFile> fetch(const QUrl &url, const QString &destination,
                                       const DownloadProgressSink &progressSink,
                                       const std::stop_token &stop);
    /// Takes back what fetch() gave, unused: the next fetch() of the same address gives it again,
    /// at once.
    void keep(const QUrl &url, std::unique_ptr<PartialFile> file);

private:
    std::unique_ptr<PartialDownload> begin(const QUrl &url, const QString &destination);
    void transfer(PartialDownload &download, const DownloadProgressSink &progressSink,
                  const std::stop_token &stop);
    void remember(std::unique_ptr<PartialDownload> download);

    const DownloadTimings m_timings;
    std::mutex m_mutex;
    std::unique_ptr<PartialDownload> m_unfinished;
};

} // namespace kestrova
