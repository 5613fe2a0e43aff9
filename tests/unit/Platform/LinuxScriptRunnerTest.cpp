#include "Platform/Linux/Applications/LinuxScriptRunner.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/X11/Windows/X11ApplicationWindows.h"
#include "support/ApplicationObject.h"
#include "support/BusApplication.h"
#include "support/QtPrinting.h"
#include "support/TerminalWindow.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

// Plays xdotool and notes how it was called.
class RecordedProcesses final : public ProcessRunning
{
public:
    ProcessOutcome run(const QString &executable, const QStringList &arguments,
                       const std::stop_token &) override
    {
        command = QStringList{executable} + arguments;
        if (!m_startFailure.isEmpty())
            throw PlatformError(m_startFailure);
        ProcessOutcome outcome;
        outcome.terminationStatus = status;
        return outcome;
    }

    void failToStart(const QString &reason) { m_startFailure = reason; }

    QStringList command;
    int status = 0;

private:
    QString m_startFailure;
};

// A desktop entry of the user's own, in the home of the virtual desktop.
class InstalledEntry
{
public:
    InstalledEntry(const QString &identifier, const QString &windowClass)
    {
        const QString folder =
            QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
        QDir().mkpath(folder);
        m_file.setFileName(folder + u'/' + identifier + u".desktop"_s);
        const QString text = u"[Desktop Entry]\nType=Application\nName=Test\nExec=true\n"
                             "StartupWMClass=%1\n"_s;
        if (!m_file.open(QIODevice::WriteOnly))
            throw std::runtime_error("the desktop entry cannot be written");
        m_file.write(text.arg(windowClass).toUtf8());
        m_file.close();
    }
    ~InstalledEntry() { m_file.remove(); }

private:
    QFile m_file;
};

class LinuxScriptRunnerTest : public testing::Test
{
protected:
    bool waitForTitle(const QString &title)
    {
        return waitUntil([&] {
            const auto active = m_windows.active();
            return active && m_windows.title(active->window) == title;
        });
    }

    ApplicationObject<QCoreApplication> m_application;
    X11Connection m_connection;
    DesktopEntries m_entries;
    X11Windows m_windows{m_connection, m_entries};
    RecordedProcesses m_processes;
    X11ApplicationWindows m_applicationWindows{m_windows};
    LinuxScriptRunner m_runner{m_applicationWindows, m_processes};
};

TEST_F(LinuxScriptRunnerTest, AWindowIsActivatedByAPartOfItsTitleInAnyLetterCase)
{
    const TerminalWindow letter(u"A letter to Anna"_s);
    ASSERT_TRUE(waitForTitle(u"A letter to Anna"_s));
    const TerminalWindow other(u"Shopping"_s);
    ASSERT_TRUE(waitForTitle(u"Shopping"_s));

    EXPECT_TRUE(m_runner.activateApplicationNamed(u" TO anna\n"_s));
    EXPECT_TRUE(waitForTitle(u"A letter to Anna"_s));
}

TEST_F(LinuxScriptRunnerTest, AnApplicationsNameWinsOverATitle)
{
    const TerminalWindow named(u"first"_s, u"Letters"_s);
    ASSERT_TRUE(waitForTitle(u"first"_s));
    const TerminalWindow titled(u"letters"_s);
    ASSERT_TRUE(waitForTitle(u"letters"_s));

    EXPECT_TRUE(m_runner.activateApplicationNamed(u"letters"_s));
    EXPECT_TRUE(waitForTitle(u"first"_s));
}

TEST_F(LinuxScriptRunnerTest, ANameThatNoWindowHasIsRefused)
{
    const TerminalWindow window(u"first"_s);
    ASSERT_TRUE(waitForTitle(u"first"_s));
    EXPECT_FALSE(m_runner.activateApplicationNamed(u"nowhere to be seen"_s));
    EXPECT_FALSE(m_runner.activateApplicationNamed(u"  "_s));
}

TEST_F(LinuxScriptRunnerTest, AnIdentifierThatNobodyAnswersToIsRefused)
{
    for (const QString &identifier :
         {u"debian-xterm"_s, u"org.example.Missing"_s, u"say \"hello\""_s, QString(), u":1.1"_s,
          u"org..example"_s, u"org.2example"_s, u"org.example."_s, u"org.ex\u00e4mple"_s,
          u"org.example"_s + QString(300, u'x')})
        EXPECT_FALSE(m_runner.activateApplication(identifier)) << qPrintable(identifier);
}

TEST_F(LinuxScriptRunnerTest, AnApplicationOnTheSessionBusIsAskedToComeForward)
{
    const BusApplication application("org.example.Text-Editor", "/org/example/Text_Editor",
                                     BusApplication::Answer::yes);
    EXPECT_TRUE(m_runner.activateApplication(u"org.example.Text-Editor"_s));
    EXPECT_EQ(application.activationCount(), 1);
}

TEST_F(LinuxScriptRunnerTest, AWorkerMayAskAnApplicationWhileTheMainThreadWaits)
{
    const BusApplication application("org.example.Editor", "/org/example/Editor",
                                     BusApplication::Answer::yes);
    bool isActivated = false;
    std::thread([&] {
        isActivated = m_runner.activateApplication(u"org.example.Editor"_s);
    }).join();
    EXPECT_TRUE(isActivated);
    EXPECT_EQ(application.activationCount(), 1);
}

TEST_F(LinuxScriptRunnerTest, AnApplicationThatRefusesOrDoesNotAnswerInTimeHasNotBeenActivated)
{
    const BusApplication refusing("org.example.Refusing", "/org/example/Refusing",
                                  BusApplication::Answer::refusal);
    EXPECT_FALSE(m_runner.activateApplication(u"org.example.Refusing"_s));
    EXPECT_EQ(refusing.activationCount(), 1);

    const BusApplication hung("org.example.Hung", "/org/example/Hung",
                              BusApplication::Answer::none);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(m_runner.activateApplication(u"org.example.Hung"_s));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 15 * LinuxScriptRunner::activationLimit);
    EXPECT_EQ(hung.activationCount(), 1);
}

TEST_F(LinuxScriptRunnerTest, PastingActivatesTheApplicationUnlessItIsInFront)
{
    const BusApplication application("org.example.Editor", "/org/example/Editor",
                                     BusApplication::Answer::yes);
    EXPECT_TRUE(m_runner.paste(u"org.example.Editor"_s));
    EXPECT_EQ(application.activationCount(), 1);

    const BusApplication terminal("org.example.Terminal", "/org/example/Terminal",
                                  BusApplication::Answer::yes);
    const InstalledEntry entry(u"org.example.Terminal"_s, u"Terminal-of-the-test"_s);
    const TerminalWindow window(u"front"_s, u"Terminal-of-the-test"_s);
    ASSERT_TRUE(waitForTitle(u"front"_s));
    ASSERT_EQ(m_windows.active()->bundleIdentifier, u"org.example.Terminal"_s);
    EXPECT_TRUE(m_runner.paste(u"org.example.Terminal"_s));
    EXPECT_EQ(terminal.activationCount(), 0);
}

TEST_F(LinuxScriptRunnerTest, PastingBringsAWindowOfTheApplicationForward)
{
    const InstalledEntry entry(u"org.example.Terminal"_s, u"Terminal-of-the-test"_s);
    const TerminalWindow behind(u"behind"_s, u"Terminal-of-the-test"_s);
    ASSERT_TRUE(waitForTitle(u"behind"_s));
    const TerminalWindow front(u"front"_s);
    ASSERT_TRUE(waitForTitle(u"front"_s));

    EXPECT_TRUE(m_runner.paste(u"org.example.Terminal"_s));
    EXPECT_TRUE(waitForTitle(u"behind"_s));
}

TEST_F(LinuxScriptRunnerTest, NothingIsPastedIntoAnotherApplication)
{
    EXPECT_FALSE(m_runner.paste(u"org.example.Missing"_s));
    EXPECT_TRUE(m_processes.command.isEmpty());
}

TEST_F(LinuxScriptRunnerTest, PastingSendsTheChordAndReportsTheOutcome)
{
    EXPECT_TRUE(m_runner.paste(std::nullopt));
    EXPECT_EQ(m_processes.command,
              (QStringList{u"xdotool"_s, u"key"_s, u"--clearmodifiers"_s, u"shift+Insert"_s}));
    m_processes.status = 1;
    EXPECT_FALSE(m_runner.paste(std::nullopt));
}

TEST_F(LinuxScriptRunnerTest, AFailureToStartIsThrownWithTheProgramsName)
{
    m_processes.failToStart(u"no such file"_s);
    try {
        m_runner.paste(std::nullopt);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.errorDescription(), u"xdotool could not be started: no such file"_s);
    }
}

} // namespace
} // namespace kestrova
