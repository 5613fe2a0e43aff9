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
    writeForEver([pipe] {
        if (write(pipe, "", 1) != 1)
            _exit(1);
    });
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
    std::this_thread::sleep_for(time);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    const qint64 confirmed = bytesIn(ends[0]);
    close(ends[0]);
    const bool wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    return wasKilled ? std::optional(confirmed) : std::nullopt;
}

} // namespace kestrova
