#include "Services/Model/CurlTransfer.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"

#include <QRegularExpression>

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr long maximumRedirects = 20;
// The largest that libcurl takes; fewer turns around the loop on a fast network.
constexpr long bufferSize = CURL_MAX_READ_SIZE;

void requireLibrary(bool isReady)
{
    if (!isReady)
        throw PlatformError(u"Download failed: libcurl cannot be used."_s);
}

CURL *newEasyHandle()
{
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    requireLibrary(initialised == CURLE_OK);
    return curl_easy_init();
}

} // namespace

CurlTransfer::CurlTransfer(PartialDownload &download, const DownloadTimings &timings,
                           const DownloadProgressSink &progressSink)
    : m_download(download), m_timings(timings), m_progressSink(progressSink),
      m_offset(download.canBeResumed() ? download.file->size() : 0),
      m_easy(newEasyHandle(), &curl_easy_cleanup), m_multi(curl_multi_init(), &curl_multi_cleanup),
      m_requestHeaders(nullptr, &curl_slist_free_all)
{
    requireLibrary(m_easy && m_multi);
    setOptions();
    if (m_offset > 0)
        requestRemainder();
    requireLibrary(curl_multi_add_handle(m_multi.get(), m_easy.get()) == CURLM_OK);
}

CurlTransfer::~CurlTransfer()
{
    curl_multi_remove_handle(m_multi.get(), m_easy.get());
}

void CurlTransfer::setOptions()
{
    CURL *const easy = m_easy.get();
    curl_easy_setopt(easy, CURLOPT_URL, m_download.url.toEncoded().constData());
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, maximumRedirects);
    // A redirect never leads from a secure connection to an open one, nor to local files.
    const bool isSecure = m_download.url.scheme() == "https"_L1;
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, isSecure ? "https" : "http,https");
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS,
                     static_cast<long>(m_timings.connectLimit.count()));
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, bufferSize);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Kestrova");
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, m_errorText.data());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlTransfer::receive);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    // No signal handlers: there are other threads. And no waiting for a name server on the way out.
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
}

void CurlTransfer::requestRemainder()
{
    const QByteArray condition = "If-Range: " + m_download.validator;
    m_requestHeaders.reset(curl_slist_append(nullptr, condition.constData()));
    requireLibrary(m_requestHeaders != nullptr);
    curl_easy_setopt(m_easy.get(), CURLOPT_HTTPHEADER, m_requestHeaders.get());
    curl_easy_setopt(m_easy.get(), CURLOPT_RANGE, (QByteArray::number(m_offset) + '-').constData());
}

CurlTransfer::Result CurlTransfer::run(const std::stop_token &stop)
{
    const CURLcode code = drive(stop);
    if (code == CURLE_OK && !m_bodyHasBegun)
        beginBody();
    if (m_fileFailure)
        std::rethrow_exception(m_fileFailure);
    return resultOf(code);
}

CURLcode CurlTransfer::drive(const std::stop_token &stop)
{
    CURLM *const multi = m_multi.get();
    const std::stop_callback wake(stop, [multi] { curl_multi_wakeup(multi); });
    m_lastArrival = Clock::now();
    for (;;) {
        throwIfStopRequested(stop);
        int running = 0;
        requireLibrary(curl_multi_perform(multi, &running) == CURLM_OK);
        if (running == 0) {
            int remaining = 0;
            return curl_multi_info_read(multi, &remaining)->data.result;
        }
        if (m_progressSink && Clock::now() - m_lastReport >= m_timings.progressInterval)
            reportProgress();

        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            m_lastArrival + m_timings.stallLimit - Clock::now());
        if (left.count() <= 0)
            return CURLE_OPERATION_TIMEDOUT;
        curl_multi_poll(multi, nullptr, 0, static_cast<int>(left.count()), nullptr);
    }
}

CurlTransfer::Result CurlTransfer::resultOf(CURLcode code)
{
    if (m_restRefused)
        return {End::restRefused, u"The server does not continue the transfer"_s};
    if (code != CURLE_OK)
        return {End::broken, failureText(code)};
    // A server may send less than the range that it was asked for.
    if (m_offset > 0 && m_download.totalBytes > m_download.file->size())
        return {End::broken, u"The server sent only a part of the file"_s};
    if (m_progressSink)
        reportProgress();
    return {End::complete, {}};
}

std::size_t CurlTransfer::receive(char *bytes, std::size_t, std::size_t count, void *self)
{
    auto &transfer = *static_cast<CurlTransfer *>(self);
    transfer.m_lastArrival = Clock::now();
    // An exception must not pass through libcurl; a short count makes it end the transfer.
    try {
        if (!transfer.m_bodyHasBegun && !transfer.beginBody())
            return 0;
        transfer.m_download.file->append(bytes, static_cast<qint64>(count));
        return count;
    } catch (...) {
        transfer.m_fileFailure = std::current_exception();
        return 0;
    }
}

bool CurlTransfer::beginBody()
{
    m_bodyHasBegun = true;
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    if (m_offset > 0) {
        if (status == 206 && canResume())
            return true;
        m_restRefused = status != 200; // A 200 brings the whole file, perhaps a newer one.
        if (m_restRefused)
            return false;
    }
    m_download.file->restart();
    m_download.validator = validator();
    curl_off_t length = -1;
    curl_easy_getinfo(m_easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    m_download.totalBytes = length < 0 ? std::nullopt : std::optional<qint64>(length);
    return true;
}

// RFC 9110, 14.4 and 15.3.7: "Content-Range: bytes FIRST-LAST/TOTAL", with the validator again.
bool CurlTransfer::canResume()
{
    static const QRegularExpression form(u"^bytes (\\d+)-\\d+/(\\d+|\\*)$"_s);
    const auto match = form.match(QString::fromLatin1(header("Content-Range")));
    if (!match.hasMatch() || match.captured(1).toLongLong() != m_offset)
        return false;
    const QByteArray tag = header("ETag");
    if (!tag.isEmpty() && m_download.validator.startsWith('"') && tag != m_download.validator)
        return false;
    if (match.captured(2) == u'*')
        return true;
    const qint64 total = match.captured(2).toLongLong();
    if (m_download.totalBytes.value_or(total) != total)
        return false;
    m_download.totalBytes = total;
    return true;
}

// RFC 9110, 13.1.5: If-Range takes a strong entity tag (8.8.3), or a date that is at least a second
// older than the answer (8.8.2.2).
QByteArray CurlTransfer::validator() const
{
    QByteArray tag = header("ETag");
    if (tag.startsWith('"'))
        return tag;
    QByteArray modified = header("Last-Modified");
    const time_t modifiedAt = curl_getdate(modified.constData(), nullptr);
    const time_t answeredAt = curl_getdate(header("Date").constData(), nullptr);
    return modifiedAt >= 0 && modifiedAt < answeredAt ? modified : QByteArray();
}

QByteArray CurlTransfer::header(const char *name) const
{
    constexpr int finalRequest = -1;
    curl_header *found = nullptr;
    if (curl_easy_header(m_easy.get(), name, 0, CURLH_HEADER, finalRequest, &found) != CURLHE_OK)
        return {};
    return found->value;
}

QString CurlTransfer::failureText(CURLcode code) const
{
    // The scheme of the address itself was checked before.
    if (code == CURLE_UNSUPPORTED_PROTOCOL)
        return u"The server redirects to an address that is not secure"_s;
    if (m_errorText.front() != '\0')
        return QString::fromUtf8(m_errorText.data());
    return QString::fromUtf8(curl_easy_strerror(code));
}

void CurlTransfer::reportProgress()
{
    m_lastReport = Clock::now();
    m_progressSink({m_download.file->size(), m_download.totalBytes});
}

} // namespace kestrova
