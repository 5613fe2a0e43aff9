#pragma once

#include <QUrl>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

namespace kestrova {

/// A port on 127.0.0.1 that neither accepts nor refuses connections: its queue is full, so that
/// the system leaves further ones hanging.
class BusyListener
{
public:
    BusyListener() : m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof m_address;
        bind(m_listener, generic(), length);
        listen(m_listener, 0);
        getsockname(m_listener, generic(), &length);
        // One more than fits would already do; not blocking, so that none waits here.
        for (int i = 0; i < 4; ++i) {
            m_fillers.push_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
            connect(m_fillers.back(), generic(), length);
        }
    }
    ~BusyListener()
    {
        for (const int filler : m_fillers)
            close(filler);
        close(m_listener);
    }
    BusyListener(const BusyListener &) = delete;
    BusyListener &operator=(const BusyListener &) = delete;

    QUrl url() const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(ntohs(m_address.sin_port)));
    }

private:
    sockaddr *generic() { return reinterpret_cast<sockaddr *>(&m_address); }

    int m_listener;
    sockaddr_in m_address = {};
    std::vector<int> m_fillers;
};

} // namespace kestrova
