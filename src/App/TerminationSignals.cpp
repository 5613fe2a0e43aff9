#include "App/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace kestrova {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can do little more than write to a pipe.
std::array<int, 2> signalPipe{-1, -1};

void noteSignal(int)
{
    const int savedError = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = savedError;
}

void openPipe()
{
    if (pipe(signalPipe.data()) != 0)
        throw std::system_error(errno, std::generic_category());
    for (const int end : signalPipe) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
}

bool isIgnored(int signal)
{
    struct sigaction current = {};
    sigaction(signal, nullptr, &current);
    return current.sa_handler == SIG_IGN;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
{
    openPipe();
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [terminate = std::move(terminate)] {
                         char byte = 0;
                         while (read(signalPipe[0], &byte, 1) > 0) {
                         }
                         terminate();
                     });
    struct sigaction action = {};
    action.sa_handler = &noteSignal;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : handledSignals) {
        if (!isIgnored(signal))
            sigaction(signal, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int signal : handledSignals) {
        if (!isIgnored(signal))
            std::signal(signal, SIG_DFL);
    }
    m_notifier.reset();
    for (int &end : signalPipe) {
        close(end);
        end = -1;
    }
}

} // namespace kestrova
