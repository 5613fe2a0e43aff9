#include "Platform/Posix/ChildProcesses.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Applications/EndWithParent.h"
#include "support/DescriptorLimit.h"
#include "support/QtPrinting.h"
#include "support/Umask.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <future>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ChildProcessesTest : public testing::Test
{
protected:
    ProcessOutcome shell(const QString &script, const std::stop_token &stop = {})
    {
        return processes.run(u"/bin/sh"_s, {u"-c"_s, script}, stop);
    }

    QTemporaryDir folder;
    ChildProcesses processes{&endWithParent};
};

TEST_F(ChildProcessesTest, WhatAChildWritesIsTheUsersAlone)
{
    const Umask umask(0);
    const QString path = folder.filePath(u"transcript"_s);
    shell(u"echo text >'%1'"_s.arg(path));
    EXPECT_EQ(modeOf(path), 0600U);
}

bool waitUntil(const std::function<bool()> &condition)
{
    const auto limit = std::chrono::steady_clock::now() + 60s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

bool isRunning(pid_t process)
{
    QFile status(u"/proc/%1/stat"_s.arg(process));
    return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
}

pid_t pidIn(const QString &path)
{
    QFile file(path);
    pid_t process = 0;
    waitUntil([&] {
        file.close();
        if (file.open(QIODevice::ReadOnly))
            process = file.readAll().trimmed().toInt();
        return process > 0;
    });
    return process;
}

TEST_F(ChildProcessesTest, BothOutputsAndTheExitStatusAreTaken)
{
    const ProcessOutcome outcome = shell(u"printf out; printf err >&2; exit 3"_s);
    EXPECT_EQ(outcome.terminationStatus, 3);
    EXPECT_EQ(outcome.standardOutput, "out");
    EXPECT_EQ(outcome.standardError, "err");
    EXPECT_FALSE(outcome.wasStopped);
}

TEST_F(ChildProcessesTest, ArgumentsArriveAsTheyAre)
{
    const ProcessOutcome outcome = processes.run(
        u"/usr/bin/printf"_s, {u"[%s]"_s, u"a b"_s, u""_s, u"\"q\" $HOME *"_s, u"é"_s}, {});
    EXPECT_EQ(outcome.standardOutput, u"[a b][][\"q\" $HOME *][é]"_s.toUtf8());
}

TEST_F(ChildProcessesTest, MegabytesOnBothOutputsDoNotStallTheChild)
{
    const ProcessOutcome outcome =
        shell(u"head -c 8000000 /dev/zero >&2 & head -c 8000000 /dev/zero; wait; echo end"_s);
    EXPECT_EQ(outcome.terminationStatus, 0);
    EXPECT_EQ(outcome.standardOutput.size(), 8'000'004);
    EXPECT_TRUE(outcome.standardOutput.endsWith("end\n"));
    EXPECT_TRUE(outcome.isStandardOutputWhole);
}

TEST_F(ChildProcessesTest, OfFarTooMuchOutputTheBeginningAndTheEndAreKept)
{
    const ProcessOutcome outcome = shell(u"for stream in 1 2; do printf begin >&$stream;"
                                         "head -c 40000000 /dev/zero >&$stream;"
                                         "printf end >&$stream; done; exit 3"_s);
    EXPECT_EQ(outcome.terminationStatus, 3);
    EXPECT_FALSE(outcome.isStandardOutputWhole);
    EXPECT_LT(outcome.standardOutput.size(), ChildProcesses::standardOutputLimit + 100);
    EXPECT_LT(outcome.standardError.size(), ChildProcesses::standardErrorLimit + 100);
    for (const QByteArray &output : {outcome.standardOutput, outcome.standardError}) {
        EXPECT_TRUE(output.startsWith("begin"));
        EXPECT_TRUE(output.endsWith("end"));
    }
}

TEST_F(ChildProcessesTest, AStopRequestEndsAChildThatWritesWithoutEnd)
{
    const QString mark = folder.filePath(u"mark"_s);
    std::stop_source stop;
    ProcessOutcome outcome;
    std::thread worker([&] {
        outcome = shell(u"trap '' TERM; touch %1; yes & yes >&2"_s.arg(mark), stop.get_token());
    });
    EXPECT_TRUE(waitUntil([&] { return QFile::exists(mark); }));
    stop.request_stop();
    worker.join();
    EXPECT_TRUE(outcome.wasStopped);
}

#ifndef __SANITIZE_ADDRESS__ // with which Qt does not use vfork
/// A program that starts children without a pause; returns once it was killed at some moment.
pid_t killedWhileItStarts(ChildProcesses &processes, std::chrono::microseconds life)
{
    const pid_t program = fork();
    if (program == 0) {
        setpgid(0, 0);
        for (;;)
            processes.run(u"/bin/true"_s, {}, {});
    }
    std::this_thread::sleep_for(life);
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    return program;
}

// A child that has not begun yet holds all that the program had open: its lock, its microphone.
TEST_F(ChildProcessesTest, NoChildOfAKilledProgramStays)
{
    for (int round = 0; round < 200; ++round) {
        const pid_t group = killedWhileItStarts(processes, 5ms + round * 37us);
        ASSERT_TRUE(waitUntil([&] { return kill(-group, 0) < 0 && errno == ESRCH; })) << round;
    }
}
#endif

TEST_F(ChildProcessesTest, AChildThatCannotBeMadeIsAnError)
{
    // UndefinedBehaviorSanitizer needs a descriptor when it sees a class for the first time.
    EXPECT_EQ(PlatformError(u"known"_s).errorDescription(), u"known"_s);
    EXPECT_EQ(shell(u"exit 3"_s).terminationStatus, 3);
    QString failure;
    try {
        const DescriptorLimit limit(3);
        shell(u"true"_s);
    } catch (const PlatformError &error) {
        failure = error.errorDescription();
    }
    EXPECT_TRUE(failure.startsWith(u"/bin/sh: "_s)) << failure.toStdString();
    EXPECT_GT(failure.size(), 12) << failure.toStdString();
}

TEST_F(ChildProcessesTest, ACrashYieldsTheSignalsNumber)
{
    EXPECT_EQ(shell(u"kill -SEGV $$"_s).terminationStatus, SIGSEGV);
}

TEST_F(ChildProcessesTest, AProgramThatCannotBeStartedIsAnError)
{
    EXPECT_THROW(processes.run(folder.filePath(u"missing"_s), {}, {}), PlatformError);
    QFile text(folder.filePath(u"text"_s));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_THROW(processes.run(text.fileName(), {}, {}), PlatformError);
}

TEST_F(ChildProcessesTest, AStopRequestEndsTheChildAndItsDescendants)
{
    const QString pidFile = folder.filePath(u"pid"_s);
    std::stop_source stop;
    ProcessOutcome outcome;
    std::thread worker([&] {
        outcome =
            shell(u"trap '' TERM; sleep 1000 & echo $! > %1; while :; do wait; done"_s.arg(pidFile),
                  stop.get_token());
    });
    const pid_t grandchild = pidIn(pidFile);
    ASSERT_TRUE(isRunning(grandchild));
    stop.request_stop();
    worker.join();
    EXPECT_TRUE(outcome.wasStopped);
    EXPECT_TRUE(waitUntil([&] { return !isRunning(grandchild); }));
}

TEST_F(ChildProcessesTest, AStopRequestedBeforehandStillEndsTheChild)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_TRUE(shell(u"sleep 1000"_s, stop.get_token()).wasStopped);
}

TEST_F(ChildProcessesTest, AChildDoesNotOutliveAProgramThatIsKilled)
{
    const QString pidFile = folder.filePath(u"pid"_s);
    const pid_t program = fork();
    if (program == 0) {
        std::thread worker([&] { shell(u"echo $$ > %1; exec sleep 1000"_s.arg(pidFile)); });
        worker.join();
        _exit(0);
    }
    const pid_t child = pidIn(pidFile);
    ASSERT_TRUE(isRunning(child));
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    EXPECT_TRUE(waitUntil([&] { return !isRunning(child); }));
}

TEST_F(ChildProcessesTest, AllThatRunCanBeEndedAtOnceWithTheirDescendants)
{
    const QString pidFile = folder.filePath(u"pid"_s);
    auto outcome = std::async(std::launch::async, [&] {
        return shell(u"trap '' TERM; sleep 1000 & echo $! > %1; wait"_s.arg(pidFile));
    });
    const pid_t grandchild = pidIn(pidFile);
    ASSERT_TRUE(isRunning(grandchild));
    // A child may have begun its work before it is known to run.
    EXPECT_TRUE(waitUntil([&] {
        endChildProcesses();
        return outcome.wait_for(0s) == std::future_status::ready;
    }));
    EXPECT_EQ(outcome.get().terminationStatus, SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !isRunning(grandchild); }));
    EXPECT_EQ(shell(u"exit 3"_s).terminationStatus, 3);
    endChildProcesses();
}

} // namespace
} // namespace kestrova
