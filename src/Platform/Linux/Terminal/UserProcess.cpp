#include "Platform/Linux/Terminal/UserProcess.h"

#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {

namespace {

// Debian 12's C library declares pidfd_open() without C linkage.
int openProcess(pid_t process)
{
    return static_cast<int>(syscall(SYS_pidfd_open, process, /*flags=*/0));
}

} // namespace

UserProcess::UserProcess(pid_t process) : m_process(process), m_descriptor(openProcess(process)) {}

UserProcess::~UserProcess()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool UserProcess::waitForEnd(std::chrono::milliseconds limit)
{
    if (m_hasEnded)
        return true;
    pollfd end{m_descriptor, POLLIN, 0};
    poll(&end, 1, static_cast<int>(limit.count()));
    m_hasEnded = waitpid(m_process, &m_status, WNOHANG) == m_process;
    return m_hasEnded;
}

} // namespace kestrova
