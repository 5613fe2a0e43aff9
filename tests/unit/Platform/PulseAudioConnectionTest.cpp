#include "Platform/Linux/Audio/PulseAudioConnection.h"

#include "support/VirtualSound.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QDir>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <mutex>
#include <stdexcept>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

// Takes the place of the sound server and hangs up on whoever connects.
class HangingUpServer
{
public:
    HangingUpServer()
    {
        sockaddr_un address = {AF_UNIX, {}};
        const QByteArray path = QFile::encodeName(QDir::tempPath() + u"/hanging-up"_s);
        path.toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
        m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0 ||
            listen(m_socket, 8) != 0)
            throw std::runtime_error("the socket cannot be opened");
        qputenv("PULSE_SERVER", "unix:" + path);
    }
    ~HangingUpServer() { close(m_socket); }
    HangingUpServer(const HangingUpServer &) = delete;
    HangingUpServer &operator=(const HangingUpServer &) = delete;

    // Whether somebody connected before the limit.
    bool hangUpNext(std::chrono::milliseconds limit)
    {
        pollfd incoming{m_socket, POLLIN, 0};
        if (poll(&incoming, 1, static_cast<int>(limit.count())) != 1)
            return false;
        close(accept(m_socket, nullptr, nullptr));
        return true;
    }

private:
    int m_socket;
};

bool isReady(PulseAudioConnection &connection)
{
    const std::lock_guard lock(connection);
    pa_context *const context = connection.context();
    return context && pa_context_get_state(context) == PA_CONTEXT_READY;
}

TEST(PulseAudioConnection, TheUsualPausesGrowAndEnd)
{
    const auto pauses = PulseAudioConnection::usualPauses();
    EXPECT_EQ(pauses.front(), 250ms);
    for (size_t i = 1; i < pauses.size(); ++i)
        EXPECT_EQ(pauses[i], 2 * pauses[i - 1]);
    EXPECT_EQ(pauses.back(), 8s);
}

TEST(PulseAudioConnection, AnUnreachableServerIsTriedAFewTimesAndThenOnlyWhenItIsNeeded)
{
    HangingUpServer server;
    const PulseAudioConnection::Pauses pauses{50ms, 100ms, 200ms};
    PulseAudioConnection connection(pauses);
    ASSERT_TRUE(server.hangUpNext(10s));
    for (const auto pause : pauses) {
        const auto start = steady_clock::now();
        ASSERT_TRUE(server.hangUpNext(10s));
        EXPECT_GE(steady_clock::now() - start, pause / 2);
    }
    EXPECT_FALSE(server.hangUpNext(4 * pauses.back()));

    const std::lock_guard lock(connection);
    EXPECT_FALSE(connection.waitUntilReady(steady_clock::now()));
    EXPECT_TRUE(server.hangUpNext(10s));
}

TEST(PulseAudioConnection, EachLossHasItsOwnAttempts)
{
    PulseAudioConnection connection({2s});
    ASSERT_TRUE(waitUntil([&] { return isReady(connection); }));
    for (int loss = 0; loss < 2; ++loss) {
        VirtualSound::server(u"stop"_s);
        ASSERT_TRUE(waitUntil([&] { return !isReady(connection); }));
        VirtualSound::server(u"start"_s);
        ASSERT_TRUE(waitUntil([&] { return isReady(connection); })) << loss;
    }
}

} // namespace
} // namespace kestrova
