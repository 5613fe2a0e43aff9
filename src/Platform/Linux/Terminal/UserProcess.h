#pragma once

#include <chrono>

#include <sys/types.h>

namespace kestrova {

/// A child process that is the user's: it goes on when this object or the program ends. One thread.
class UserProcess
{
public:
    /// The process is a child of ours that nobody else waits for.
    explicit UserProcess(pid_t process);
    ~UserProcess();
    UserProcess(const UserProcess &) = delete;
    UserProcess &operator=(const UserProcess &) = delete;

    /// Becomes readable when the process ends; -1 when the system has no such descriptor.
    int descriptor() const { return m_descriptor; }
    /// Whether it ended before the limit; it is then no zombie.
    bool waitForEnd(std::chrono::milliseconds limit);
    /// Of an ended process: by itself and with status 0.
    bool hasSucceeded() const { return m_status == 0; }

private:
    const pid_t m_process;
    const int m_descriptor;
    bool m_hasEnded = false;
    int m_status = 0; // as waitpid() gives it
};

} // namespace kestrova
