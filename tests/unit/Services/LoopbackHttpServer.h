#pragma once

#include <QByteArray>
#include <QMap>
#include <QUrl>

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrova {

struct HttpRequest
{
    QString path;
    QMap<QByteArray, QByteArray> headers; ///< names in lower case

    /// The N of "Range: bytes=N-"; 0 without one.
    qsizetype rangeStart() const;
};

/// A real HTTP server on 127.0.0.1, one request per connection, whose answers the test writes byte
/// by byte. Each connection has its own thread.
class LoopbackHttpServer
{
public:
    /// The client's end of one request. Closed when the handler returns.
    class Connection
    {
    public:
        explicit Connection(int socket) : m_socket(socket) {}
        /// Sends everything, or as much as the client takes before it goes away.
        void send(const QByteArray &bytes);
        /// Blocks until the client or the server goes away.
        void waitForClose();

    private:
        const int m_socket;
    };
    using Handler = std::function<void(const HttpRequest &, Connection &)>;

    explicit LoopbackHttpServer(Handler handler);
    /// Ends every connection and waits for the handlers.
    ~LoopbackHttpServer();

    QString urlString(const QString &path) const;
    QUrl url(const QString &path) const { return QUrl(urlString(path)); }
    /// Every request so far, in order of arrival.
    std::vector<HttpRequest> requests() const;

private:
    void acceptConnections();
    void serve(int socket);

    const Handler m_handler;
    int m_listener = -1;
    quint16 m_port = 0;
    mutable std::mutex m_mutex;
    std::vector<HttpRequest> m_requests;
    bool m_stopping = false;
    std::vector<int> m_sockets; // Closed with the server: until then no number is used twice.
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};

/// Status line, headers and a blank line.
QByteArray responseHead(const QByteArray &status, const QList<QByteArray> &headers);

/// A file as a good server offers it: with entity tag and byte ranges.
struct ServedFile
{
    QByteArray body;
    QByteArray entityTag = "\"v1\"";

    /// The answer to the request, which stops after so many bytes of the body.
    QByteArray answer(const HttpRequest &request, qsizetype bodyLimit = 1 << 30) const;
};

} // namespace kestrova
