#include "Platform/Linux/LinuxScriptRunner.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/X11/X11Windows.h"
#include "support/QtPrinting.h"
#include "support/TerminalWindow.h"

#include <gtest/gtest.h>

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

    X11Connection m_connection;
    DesktopEntries m_entries;
    X11Windows m_windows{m_connection, m_entries};
    RecordedProcesses m_processes;
    LinuxScriptRunner m_runner{m_windows, m_processes};
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
         {u"debian-xterm"_s, u"org.example.Missing"_s, u"say \"hello\""_s, QString()})
        EXPECT_FALSE(m_runner.activateApplication(identifier)) << qPrintable(identifier);
}

TEST_F(LinuxScriptRunnerTest, PastingSendsTheChordAndReportsTheOutcome)
{
    EXPECT_TRUE(m_runner.paste(std::nullopt));
    EXPECT_EQ(m_processes.command,
              (QStringList{u"xdotool"_s, u"key"_s, u"--clearmodifiers"_s, u"shift+Insert"_s}));
    m_processes.status = 1;
    EXPECT_FALSE(m_runner.paste(std::nullopt));
    EXPECT_FALSE(m_runner.paste(u"org.example.Missing"_s));
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
