#include "Platform/Linux/Terminal/LinuxTerminalLauncher.h"

#include "Models/KestrovaError.h"
#include "Platform/Linux/Files/LinuxStandardDirectories.h"
#include "Platform/Linux/X11/X11Session.h"
#include "Services/TestFiles.h"
#include "support/ApplicationObject.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/wait.h>

#include <cerrno>
#include <csignal>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class LinuxTerminalLauncherTest : public testing::Test
{
protected:
    LinuxTerminalLauncherTest() { qputenv("SHELL", "/bin/bash"); }

    LinuxTerminalLauncher launcher(const QList<QStringList> &terminals)
    {
        return {directories, [this] { return session->newStartupId(); }, terminals};
    }

    // A program that plays a terminal by running a shell script.
    QStringList terminal(const QString &name, const QByteArray &script)
    {
        const QString path = folder.filePath(name);
        EXPECT_TRUE(writeFile(path, "#!/bin/sh\n" + script));
        EXPECT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
        return {path};
    }

    QByteArray written(const QString &name)
    {
        waitUntil([&] { return QFile::exists(folder.filePath(name)); });
        return readFile(folder.filePath(name));
    }

    void open(LinuxTerminalLauncher &opening, const QString &command)
    {
        opening.openTerminalAndRun(command, [this] { ++lateFailures; });
    }

    // A shell command that writes a whole file at once.
    QString writing(const QString &words, const QString &name) const
    {
        const QString path = folder.filePath(name);
        return u"printf '%s|' %1 > '%2.new'; mv '%2.new' '%2'"_s.arg(words, path);
    }

    QStringList scriptsLeft() { return namesIn(directories.temporaryDirectory()); }

    ApplicationObject<QCoreApplication> application;
    const QTemporaryDir folder;
    LinuxStandardDirectories directories;
    const std::shared_ptr<X11Session> session = X11Session::open();
    int lateFailures = 0;
};

TEST_F(LinuxTerminalLauncherTest, ATerminalThatIsMissingOrFailsAtOnceIsReplacedByTheNext)
{
    auto opening = launcher({{u"/nonexistent/terminal"_s},
                             {folder.path()},
                             terminal(u"failing"_s, "exit 1"),
                             terminal(u"crashing"_s, "kill -9 $$"),
                             terminal(u"working"_s, "exec \"$@\""),
                             terminal(u"last"_s, "touch '" + folder.path().toUtf8() + "/wrong'")});
    open(opening, writing(u"ran"_s, u"report"_s));
    EXPECT_EQ(written(u"report"_s), "ran|");
    EXPECT_FALSE(QFile::exists(folder.filePath(u"wrong"_s)));
    EXPECT_EQ(scriptsLeft(), QStringList());
}

TEST_F(LinuxTerminalLauncherTest, WithoutAnyTerminalItThrowsAndLeavesNothing)
{
    for (const QList<QStringList> &terminals :
         {QList<QStringList>(), QList<QStringList>{{u"/nonexistent/terminal"_s}}}) {
        auto opening = launcher(terminals);
        EXPECT_THROW(open(opening, u"true"_s), PlatformError);
        EXPECT_EQ(scriptsLeft(), QStringList());
    }
}

TEST_F(LinuxTerminalLauncherTest, TerminalsThatAllRefuseAreToldFromNone)
{
    auto opening = launcher({terminal(u"failing"_s, "exit 1"), {u"/nonexistent/terminal"_s}});
    try {
        open(opening, u"true"_s);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const KestrovaError &error) {
        EXPECT_EQ(error.errorDescription(), u"Failed to open Terminal install command."_s);
    }
    EXPECT_EQ(scriptsLeft(), QStringList());
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a failed terminal is a zombie";
}

TEST_F(LinuxTerminalLauncherTest, ATerminalThatHandsOverOrIsSlowHasTakenTheCommand)
{
    const QByteArray path = folder.path().toUtf8();
    const auto slow = terminal(u"slow"_s, "read line < '" + path + "/go'; exec \"$@\"");
    ASSERT_EQ(QProcess::execute(u"mkfifo"_s, {folder.filePath(u"go"_s)}), 0);
    const auto wrong = terminal(u"wrong"_s, "exec \"$@\"");
    const auto start = std::chrono::steady_clock::now();
    auto opening = launcher({slow, wrong});
    open(opening, writing(u"slow"_s, u"report"_s));
    EXPECT_LT(std::chrono::steady_clock::now() - start, LinuxTerminalLauncher::failureLimit + 20s);
    EXPECT_FALSE(QFile::exists(folder.filePath(u"report"_s)));
    ASSERT_TRUE(writeFile(folder.filePath(u"go"_s), "\n"));
    EXPECT_EQ(written(u"report"_s), "slow|");

    const auto handing = terminal(u"handing"_s, "\"$@\" & exit 0");
    auto second = launcher({handing, wrong});
    open(second, writing(u"handed"_s, u"second"_s));
    EXPECT_EQ(written(u"second"_s), "handed|");
}

TEST_F(LinuxTerminalLauncherTest, ATerminalThatDiesLaterIsReplacedByTheNext)
{
    // It waits for the test, which has then left it behind.
    ASSERT_EQ(QProcess::execute(u"mkfifo"_s, {folder.filePath(u"go"_s)}), 0);
    const auto dying =
        terminal(u"dying"_s, "read line < '" + folder.path().toUtf8() + "/go'; exit 1");
    auto opening = launcher({dying, terminal(u"working"_s, "exec \"$@\"")});
    open(opening, writing(u"ran"_s, u"report"_s));
    EXPECT_FALSE(QFile::exists(folder.filePath(u"report"_s)));
    ASSERT_TRUE(writeFile(folder.filePath(u"go"_s), "\n"));
    EXPECT_EQ(written(u"report"_s), "ran|");
    EXPECT_EQ(lateFailures, 0);

    auto last = launcher({dying});
    open(last, u"true"_s);
    EXPECT_EQ(scriptsLeft().size(), 1);
    ASSERT_TRUE(writeFile(folder.filePath(u"go"_s), "\n"));
    EXPECT_TRUE(waitUntil([&] { return lateFailures == 1; }));
    EXPECT_EQ(scriptsLeft(), QStringList());
}

TEST_F(LinuxTerminalLauncherTest, TheTerminalsEndLeavesNoZombie)
{
    auto opening = launcher({terminal(u"short"_s, "exec \"$@\" < /dev/null")});
    open(opening, writing(u"$PPID"_s, u"report"_s));
    const pid_t terminal = written(u"report"_s).chopped(1).toInt();
    ASSERT_GT(terminal, 0);
    EXPECT_TRUE(waitUntil([&] { return kill(terminal, 0) != 0 && errno == ESRCH; }));
}

TEST_F(LinuxTerminalLauncherTest, TheTerminalOutlivesTheLauncherInASessionOfItsOwn)
{
    {
        auto opening = launcher({terminal(u"long"_s, "export ID=$$; \"$@\"; exec sleep 60")});
        open(opening,
             writing(u"$ID $(ps -o sid= -p $ID) ${DESKTOP_STARTUP_ID%%_*}"_s, u"report"_s));
    }
    const QList<QByteArray> values = written(u"report"_s).split('|');
    ASSERT_EQ(values.size(), 4);
    const pid_t terminal = values[0].toInt();
    ASSERT_GT(terminal, 0);
    EXPECT_EQ(values[1].toInt(), terminal);
    EXPECT_TRUE(values[2].startsWith("kestrova-")) << values[2].constData();
    EXPECT_EQ(kill(terminal, SIGKILL), 0);
}

class LinuxTerminalLauncherRealTest : public LinuxTerminalLauncherTest,
                                      public testing::WithParamInterface<const char *>
{
protected:
    QStringList knownTerminal()
    {
        for (const QStringList &known : LinuxTerminalLauncher::knownTerminals()) {
            if (known.first() == QLatin1StringView(GetParam()))
                return known;
        }
        return {};
    }
};

TEST_P(LinuxTerminalLauncherRealTest, TheCommandRunsVerbatimInFrontAndTheShellStaysOpen)
{
    auto opening = launcher({knownTerminal()});
    open(opening, writing(u"\"say \\\"hello\\\"\" 'a\\b  c' $PPID"_s, u"report"_s));
    const QList<QByteArray> values = written(u"report"_s).split('|');
    ASSERT_EQ(values.size(), 4);
    EXPECT_EQ(values[0], "say \"hello\"");
    EXPECT_EQ(values[1], "a\\b  c");
    EXPECT_EQ(scriptsLeft(), QStringList());

    // It has the keyboard, and what is typed there is a command.
    ApplicationWindows &windows = session->applicationWindows();
    ASSERT_TRUE(waitUntil([&] { return windows.active().has_value(); }));
    const QString typed = u"touch '%1'\n"_s.arg(folder.filePath(u"typed"_s));
    ASSERT_EQ(QProcess::execute(u"xdotool"_s, {u"type"_s, typed}), 0);
    EXPECT_TRUE(waitUntil([&] { return QFile::exists(folder.filePath(u"typed"_s)); }));
}

INSTANTIATE_TEST_SUITE_P(Terminals, LinuxTerminalLauncherRealTest,
                         testing::Values("xterm", "xfce4-terminal", "x-terminal-emulator"),
                         [](const auto &parameter) {
                             std::string terminal = parameter.param;
                             std::erase(terminal, '-');
                             return terminal;
                         });

} // namespace
} // namespace kestrova
