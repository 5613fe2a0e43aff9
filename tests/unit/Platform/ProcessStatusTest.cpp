#include "Platform/Linux/Applications/ProcessStatus.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(ProcessStatus, OurOwnProcessHasAStatusAndAProgram)
{
    const auto status = processStatus(getpid());
    ASSERT_TRUE(status);
    EXPECT_GT(status->startTime, processStatus(1)->startTime);
    EXPECT_EQ(executablePath(getpid()), QFile::symLinkTarget(u"/proc/self/exe"_s));
}

TEST(ProcessStatus, ANameMayContainParenthesesAndBlanks)
{
    char before[16] = {};
    ASSERT_EQ(prctl(PR_GET_NAME, before), 0);
    ASSERT_EQ(prctl(PR_SET_NAME, "a) Z (b"), 0);
    const auto status = processStatus(getpid());
    ASSERT_EQ(prctl(PR_SET_NAME, before), 0);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->name, u"a) Z (b"_s);
}

TEST(ProcessStatus, AProcessThatWaitsToBeReapedHasNone)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    siginfo_t ended = {};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(processStatus(child));
    waitpid(child, nullptr, 0);
    EXPECT_FALSE(processStatus(child));
    EXPECT_EQ(executablePath(child), QString());
}

TEST(ProcessStatus, NoProcessHasANumberBelowOne)
{
    EXPECT_FALSE(processStatus(0));
    EXPECT_FALSE(processStatus(-1));
}

TEST(ProcessStatus, AProgramReplacedByAnUpdateKeepsItsPath)
{
    const QTemporaryDir folder;
    const QString program = folder.filePath(u"program"_s);
    ASSERT_TRUE(QFile::copy(u"/bin/cat"_s, program));
    QProcess process;
    process.start(program, {});
    ASSERT_TRUE(process.waitForStarted());
    ASSERT_TRUE(QFile::remove(program));
    EXPECT_EQ(executablePath(static_cast<qint32>(process.processId())), program);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
}

} // namespace
} // namespace kestrova
