#include "support/KilledWriter.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <thread>

namespace kestrova {
namespace {

/// An exception ends the process: it must not come back into the test that forked it.
[[noreturn]] void runWriter(const WriteForEver &writeForEver, int pipe) noexcept
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const auto report = [pipe] {
        if (write(pipe, "", 1) != 1)
            _exit(1);
    };
    report(); // It runs: on a machine with other load that takes longer than a write.
    writeForEver(report);
    _exit(1);
}

qint64 bytesIn(int pipe)
{
    char bytes[4096];
    qint64 total = 0;
    for (ssize_t count = 0; (count = read(pipe, bytes, sizeof bytes)) > 0;)
        total += count;
    return total;
}

} // namespace

std::optional<qint64> writesUntilKilled(const WriteForEver &writeForEver,
                                        std::chrono::microseconds time)
{
    int ends[2] = {};
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child == 0)
        runWriter(writeForEver, ends[1]);
    close(ends[1]);
    char isRunning = 0;
    if (read(ends[0], &isRunning, 1) != 1)
        throw std::runtime_error("no writer");
    std::this_thread::sleep_for(time);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    const qint64 confirmed = bytesIn(ends[0]);
    close(ends[0]);
    const bool wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    return wasKilled ? std::optional(confirmed) : std::nullopt;
}

qint64 durationOf(const std::function<void()> &write)
{
    using namespace std::chrono;
    const auto start = steady_clock::now();
    write();
    return duration_cast<microseconds>(steady_clock::now() - start).count();
}

} // namespace kestrova
