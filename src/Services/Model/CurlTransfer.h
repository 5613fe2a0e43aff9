#pragma once

#include "Services/Model/DownloadProgress.h"
#include "Services/Model/DownloadTimings.h"
#include "Services/Model/PartialDownload.h"

#include <curl/curl.h>

#include <array>
#include <exception>
#include <stop_token>

namespace kestrova {

/// One request through libcurl, redirects included, whose body goes into a partial download. When
/// that can be resumed, only the rest is asked for. The status code of the answer decides nothing
/// else: a body is a body. Used by one thread, once; what it is given outlives it.
class CurlTransfer
{
public:
    enum class End {
        complete,
        broken,      ///< the transport failed; the partial download holds what arrived
        restRefused, ///< the server answered the question for the rest with something else
    };
    struct Result
    {
        End end;
        QString failure; ///< what the transport says about itself; empty when complete
    };

    CurlTransfer(PartialDownload &download, const DownloadTimings &timings,
                 const DownloadProgressSink &progressSink);
    ~CurlTransfer();

    /// Blocks until the answer has ended. Throws PlatformError when the file cannot be written,
    /// and Cancelled promptly after a stop request, whatever the network does.
    Result run(const std::stop_token &stop);

private:
    using Clock = std::chrono::steady_clock;

    void setOptions();
    void requestRemainder();
    /// The transport's result; CURLE_OPERATION_TIMEDOUT also when nothing arrives for too long.
    CURLcode drive(const std::stop_token &stop);
    Result resultOf(CURLcode code);

    static std::size_t receive(char *bytes, std::size_t, std::size_t count, void *self);
    /// False when the body is of no use and the transfer must end.
    bool beginBody();
    /// Whether the answer is what was asked for: it goes on where the file ends.
    bool canResume();
    QByteArray validator() const;
    QByteArray header(const char *name) const;
    QString failureText(CURLcode code) const;
    void reportProgress();

    PartialDownload &m_download;
    const DownloadTimings &m_timings;
    const DownloadProgressSink &m_progressSink;
    const qint64 m_offset;

    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> m_easy;
    std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> m_multi;
    std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> m_requestHeaders;
    std::array<char, CURL_ERROR_SIZE> m_errorText = {};

    bool m_bodyHasBegun = false;
    bool m_restRefused = false;
    std::exception_ptr m_fileFailure;
    Clock::time_point m_lastArrival;
    Clock::time_point m_lastReport;
};

} // namespace kestrova
