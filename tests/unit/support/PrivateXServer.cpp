#include "support/PrivateXServer.h"

#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {

PrivateXServer::PrivateXServer(std::initializer_list<const char *> options)
{
    // What writes to it after its death gets an error, as in the program.
    std::signal(SIGPIPE, SIG_IGN);
    int ends[2] = {};
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    const std::string writeEnd = std::to_string(ends[1]);
    std::vector<const char *> arguments{"Xvfb",      "-displayfd", writeEnd.c_str(),
                                        "-nolisten", "tcp",        "-noreset"};
    arguments.insert(arguments.end(), options);
    arguments.push_back(nullptr);
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(ends[0]);
        execvp("Xvfb", const_cast<char **>(arguments.data()));
        _exit(127);
    }
    close(ends[1]);
    // The server writes its display number once it takes connections.
    QByteArray number;
    for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';)
        number += digit;
    close(ends[0]);
    if (number.isEmpty()) {
        kill();
        throw std::runtime_error("Xvfb did not start");
    }
    m_displayName = ':' + number;
}

PrivateXServer::~PrivateXServer()
{
    kill();
}

void PrivateXServer::kill()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
    m_process = -1;
}

void PrivateXServer::freeze()
{
    ::kill(m_process, SIGSTOP);
    waitpid(m_process, nullptr, WUNTRACED);
}

} // namespace kestrova
