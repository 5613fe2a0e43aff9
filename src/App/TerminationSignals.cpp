#include "App/TerminationSignals.h"

#include "Platform/ProcessRunning.h"

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <system_error>

namespace kestrova {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can do little more than write to a pipe.
std::array<int, 2> signalPipe{-1, -1};

void noteSignal(int)
{
    const int savedError = errno;
    TerminationSignals::limitEnd();
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
    errno = savedError;
}

// Of the main thread.
clockid_t computingClock = CLOCK_PROCESS_CPUTIME_ID;
// What it had computed when the end was looked at last, in milliseconds.
std::atomic<long> computedBefore = 0;
std::atomic<int> extensionCount = 0;

long computed()
{
    timespec time = {};
    clock_gettime(computingClock, &time);
    return long(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000;
}

// Whether the end goes on, slowly, because the machine is busy with something else.
bool isStillEnding()
{
    constexpr long leastProgress = 10; // milliseconds of computing in a second
    constexpr int mostExtensions = 20;
    const long before = computedBefore.exchange(computed());
    return computedBefore - before >= leastProgress && extensionCount++ < mostExtensions;
}

// In whichever thread, however the main thread is stuck.
void endNow(int)
{
    const int savedError = errno;
    if (isStillEnding()) {
        alarm(1);
        errno = savedError;
        return;
    }
    endChildProcesses();
    constexpr std::string_view message = "kestrova: It did not end in time.\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, message.data(), message.size());
    _exit(EXIT_FAILURE);
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
    pthread_getcpuclockid(pthread_self(), &computingClock);
    std::signal(SIGALRM, &endNow);
    for (const int signal : handledSignals) {
        if (!isIgnored(signal))
            sigaction(signal, &action, nullptr);
    }
}

void TerminationSignals::limitEnd()
{
    // Another alarm replaces the one that is set.
    if (const unsigned remaining = alarm(unsigned(endLimit.count())))
        alarm(remaining);
    else
        computedBefore = computed();
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
