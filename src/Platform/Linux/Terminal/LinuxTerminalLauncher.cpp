#include "Platform/Linux/Terminal/LinuxTerminalLauncher.h"

#include "Models/KestrovaError.h"
#include "Platform/Linux/Applications/ApplicationLauncher.h"
#include "Platform/Linux/Terminal/TerminalScript.h"
#include "Platform/Linux/Terminal/UserProcess.h"

#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// Terminals disagree about quoting: a script's path is a word that they all take as it is.
QString writeScript(StandardDirectories &directories, const QString &command)
{
    QTemporaryFile file(directories.temporaryDirectory() + u"/kestrova-terminal-XXXXXX.sh"_s);
    const QByteArray script = terminalScript(command);
    if (!file.open() || file.write(script) != script.size() || !file.flush())
        throw PlatformError(file.fileName() + u": "_s + file.errorString());
    file.setAutoRemove(false);
    return file.fileName();
}

// The script removes itself when it is run. A terminal may also hand over to a process that runs
// already, which then runs it later.
bool hasTakenCommand(const UserProcess &endedProcess, const QString &scriptPath)
{
    return endedProcess.hasSucceeded() || !QFile::exists(scriptPath);
}

// Whether the process did not fail within the limit.
bool survives(UserProcess &process, const QString &scriptPath)
{
    const auto end = std::chrono::steady_clock::now() + LinuxTerminalLauncher::failureLimit;
    while (QFile::exists(scriptPath) && std::chrono::steady_clock::now() < end) {
        if (process.waitForEnd(LinuxTerminalLauncher::pollInterval))
            return hasTakenCommand(process, scriptPath);
    }
    return true;
}

} // namespace

QList<QStringList> LinuxTerminalLauncher::knownTerminals()
{
    return {{u"xdg-terminal-exec"_s},
            {u"x-terminal-emulator"_s, u"-e"_s},
            {u"gnome-terminal"_s, u"--"_s},
            {u"kgx"_s, u"--"_s},
            {u"konsole"_s, u"-e"_s},
            {u"xfce4-terminal"_s, u"-x"_s},
            {u"mate-terminal"_s, u"-x"_s},
            {u"lxterminal"_s, u"-e"_s},
            {u"qterminal"_s, u"-e"_s},
            {u"tilix"_s, u"-e"_s},
            {u"alacritty"_s, u"-e"_s},
            {u"kitty"_s},
            {u"wezterm"_s, u"start"_s, u"--"_s},
            {u"foot"_s},
            {u"xterm"_s, u"-e"_s}};
}

LinuxTerminalLauncher::LinuxTerminalLauncher(StandardDirectories &directories,
                                             std::function<QByteArray()> newStartupId,
                                             const QList<QStringList> &terminals)
    : m_directories(directories), m_newStartupId(std::move(newStartupId)), m_terminals(terminals)
{
}

void LinuxTerminalLauncher::openTerminalAndRun(const QString &command, std::function<void()> failed)
{
    const QString scriptPath = writeScript(m_directories, command);
    const Opening opening = openNext({scriptPath, m_terminals, std::move(failed)});
    if (opening == Opening::taken)
        return;
    QFile::remove(scriptPath);
    if (opening == Opening::refused)
        throw KestrovaError::processFailed(u"Failed to open Terminal install command."_s);
    throw PlatformError(u"No terminal could be opened."_s);
}

LinuxTerminalLauncher::Opening LinuxTerminalLauncher::openNext(Attempt attempt)
{
    Opening opening = Opening::none;
    while (!attempt.terminals.isEmpty()) {
        const auto process = start(attempt.terminals.takeFirst(), attempt.scriptPath);
        if (process && survives(*process, attempt.scriptPath)) {
            watch(process, attempt);
            return Opening::taken;
        }
        if (process)
            opening = Opening::refused;
    }
    return opening;
}

std::shared_ptr<UserProcess> LinuxTerminalLauncher::start(const QStringList &terminal,
                                                          const QString &scriptPath)
{
    if (QStandardPaths::findExecutable(terminal.first()).isEmpty())
        return nullptr;
    const auto child =
        launchProgram(terminal + QStringList{u"/bin/sh"_s, scriptPath}, m_newStartupId());
    return child ? std::make_shared<UserProcess>(*child) : nullptr;
}

void LinuxTerminalLauncher::watch(const std::shared_ptr<UserProcess> &process, const Attempt &rest)
{
    if (process->descriptor() < 0)
        return;
    auto *const end = new QSocketNotifier(process->descriptor(), QSocketNotifier::Read, &m_running);
    QObject::connect(end, &QSocketNotifier::activated, end, [this, end, process, rest] {
        end->setEnabled(false);
        end->deleteLater();
        process->waitForEnd({});
        if (!hasTakenCommand(*process, rest.scriptPath))
            goOn(rest);
    });
}

void LinuxTerminalLauncher::goOn(const Attempt &attempt)
{
    if (openNext(attempt) == Opening::taken)
        return;
    QFile::remove(attempt.scriptPath);
    attempt.failed();
}

} // namespace kestrova
