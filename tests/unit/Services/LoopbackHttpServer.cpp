#include "Services/LoopbackHttpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

void require(bool condition)
{
    if (!condition)
        throw std::runtime_error("the loopback server cannot be started");
}

HttpRequest parseRequest(const QByteArray &head)
{
    QList<QByteArray> lines = head.split('\n');
    HttpRequest request;
    request.path = QString::fromUtf8(lines.takeFirst().split(' ').value(1));
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers[line.left(colon).toLower()] = line.mid(colon + 1).trimmed();
    }
    return request;
}

} // namespace

qsizetype HttpRequest::rangeStart() const
{
    return headers.value("range").split('=').last().split('-').first().toLongLong();
}

void LoopbackHttpServer::Connection::send(const QByteArray &bytes)
{
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(m_socket, bytes.constData() + sent,
                                     static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += count;
    }
}

void LoopbackHttpServer::Connection::waitForClose()
{
    char byte = 0;
    while (recv(m_socket, &byte, 1, 0) > 0) {
    }
}

LoopbackHttpServer::LoopbackHttpServer(Handler handler) : m_handler(std::move(handler))
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    require(m_listener >= 0 && bind(m_listener, generic, length) == 0 &&
            listen(m_listener, SOMAXCONN) == 0 && getsockname(m_listener, generic, &length) == 0);
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { acceptConnections(); });
}

LoopbackHttpServer::~LoopbackHttpServer()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        shutdown(m_listener, SHUT_RDWR);
        for (const int socket : m_sockets)
            shutdown(socket, SHUT_RDWR);
    }
    m_acceptor.join();
    for (std::thread &thread : m_threads)
        thread.join();
    for (const int socket : m_sockets)
        close(socket);
    close(m_listener);
}

QString LoopbackHttpServer::urlString(const QString &path) const
{
    return u"http://127.0.0.1:%1%2"_s.arg(m_port).arg(path);
}

std::vector<HttpRequest> LoopbackHttpServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void LoopbackHttpServer::acceptConnections()
{
    for (;;) {
        const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            return;
        const std::lock_guard lock(m_mutex);
        m_sockets.push_back(socket);
        if (m_stopping)
            return;
        m_threads.emplace_back([this, socket] {
            serve(socket);
            shutdown(socket, SHUT_RDWR);
        });
    }
}

void LoopbackHttpServer::serve(int socket)
{
    QByteArray head;
    while (!head.contains("\r\n\r\n")) {
        std::array<char, 4096> piece;
        const ssize_t count = recv(socket, piece.data(), piece.size(), 0);
        if (count <= 0)
            return;
        head.append(piece.data(), count);
    }
    const HttpRequest request = parseRequest(head);
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
    }
    Connection connection(socket);
    m_handler(request, connection);
}

QByteArray responseHead(const QByteArray &status, const QList<QByteArray> &headers)
{
    QByteArray head = "HTTP/1.1 " + status + "\r\nConnection: close\r\n";
    for (const QByteArray &header : headers)
        head += header + "\r\n";
    return head + "\r\n";
}

QByteArray ServedFile::answer(const HttpRequest &request, qsizetype bodyLimit) const
{
    const qsizetype start =
        request.headers.value("if-range") == entityTag ? request.rangeStart() : 0;
    QList<QByteArray> headers = {"ETag: " + entityTag,
                                 "Content-Length: " + QByteArray::number(body.size() - start)};
    if (start > 0)
        headers += "Content-Range: bytes " + QByteArray::number(start) + '-' +
                   QByteArray::number(body.size() - 1) + '/' + QByteArray::number(body.size());
    return responseHead(start > 0 ? "206 Partial Content" : "200 OK", headers) +
           body.mid(start, bodyLimit);
}

} // namespace kestrova
