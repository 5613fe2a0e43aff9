#include "App/SingleInstanceLock.h"

#include "Platform/Fake/FakeStandardDirectories.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

// A second process that does something, says what came of it, and then lives until it is killed.
class OtherProcess
{
public:
    // The work gets the descriptor on which it reports.
    explicit OtherProcess(const std::function<void(int)> &work)
    {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("no pipe");
        m_process = fork();
        if (m_process == 0) {
            work(ends[1]);
            while (true)
                pause();
        }
        close(ends[1]);
        m_report = ends[0];
    }
    ~OtherProcess()
    {
        kill();
        close(m_report);
    }
    OtherProcess(const OtherProcess &) = delete;
    OtherProcess &operator=(const OtherProcess &) = delete;

    // Waits for the next line.
    std::string report() const
    {
        std::string line;
        for (char next = 0; read(m_report, &next, 1) == 1 && next != '\n';)
            line += next;
        return line;
    }

    void kill()
    {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = 0;
    }

private:
    pid_t m_process = -1;
    int m_report = -1;
};

class SingleInstanceLockTest : public testing::Test
{
protected:
    // Work of another process, whose whole life the lock then lasts.
    std::function<void(int)> acquiring()
    {
        return [this](int report) {
            static SingleInstanceLock own(directories);
            dprintf(report, own.acquire() ? "held\n" : "refused\n");
        };
    }

    FakeStandardDirectories directories;
    const QString path = directories.runtimeDirectory() + u"/kestrova-menubar.lock"_s;
};

TEST_F(SingleInstanceLockTest, TheLockIsTakenOnceAndAskedForAgainForFree)
{
    SingleInstanceLock lock(directories);
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(lock.acquire());
}

TEST_F(SingleInstanceLockTest, ASecondProcessIsRefusedAndTheFirstKeepsTheLock)
{
    SingleInstanceLock lock(directories);
    ASSERT_TRUE(lock.acquire());
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_EQ(OtherProcess(acquiring()).report(), "refused");
}

TEST_F(SingleInstanceLockTest, AKilledHolderFreesTheLockAndItsFileIsUsedAgain)
{
    OtherProcess holder(acquiring());
    ASSERT_EQ(holder.report(), "held");
    SingleInstanceLock lock(directories);
    EXPECT_FALSE(lock.acquire());
    const auto inode = [this] {
        struct stat status = {};
        return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
    };
    const ino_t before = inode();
    holder.kill();
    EXPECT_NE(before, 0U);
    EXPECT_EQ(inode(), before);
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(inode(), before);
}

TEST_F(SingleInstanceLockTest, AChildOfTheHolderDoesNotKeepTheLock)
{
    OtherProcess holder([acquire = acquiring()](int report) {
        acquire(report);
        if (fork() != 0)
            return;
        dup2(report, STDOUT_FILENO);
        execl("/bin/sh", "sh", "-c", "echo $$; exec sleep 60", nullptr);
    });
    ASSERT_EQ(holder.report(), "held");
    const pid_t child = std::stoi(holder.report());
    holder.kill();
    SingleInstanceLock lock(directories);
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(kill(child, SIGKILL), 0) << "it was not there to keep anything";
}

TEST_F(SingleInstanceLockTest, TheEndOfTheObjectFreesTheLockAndLeavesTheFile)
{
    {
        SingleInstanceLock lock(directories);
        ASSERT_TRUE(lock.acquire());
    }
    EXPECT_EQ(OtherProcess(acquiring()).report(), "held");
    EXPECT_TRUE(QFileInfo::exists(path));
}

TEST_F(SingleInstanceLockTest, TheFileIsReadableByAllUnlessTheUsersMaskForbidsIt)
{
    const mode_t before = umask(0);
    ASSERT_TRUE(SingleInstanceLock(directories).acquire());
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & ALLPERMS, 0644U);
    EXPECT_EQ(status.st_size, 0);
    ASSERT_TRUE(QFile::remove(path));
    umask(077);
    ASSERT_TRUE(SingleInstanceLock(directories).acquire());
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & ALLPERMS, 0600U);
    ASSERT_TRUE(QFile::remove(path));
    umask(0777);
    ASSERT_TRUE(SingleInstanceLock(directories).acquire());
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & ALLPERMS, 0600U) << "the next start must get at it";
    umask(before);
}

TEST_F(SingleInstanceLockTest, WithoutAFolderItIsRefusedAndSaysWhyUntilThereIsOne)
{
    SingleInstanceLock lock(directories);
    directories.failTemporaryDirectory(u"not yours"_s);
    EXPECT_FALSE(lock.acquire());
    EXPECT_EQ(lock.problem(), u"not yours"_s);
    directories.failTemporaryDirectory({});
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(lock.problem(), QString());
}

TEST_F(SingleInstanceLockTest, ANamedPipeInItsPlaceIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    SingleInstanceLock lock(directories);
    EXPECT_TRUE(lock.acquire());
    EXPECT_EQ(OtherProcess(acquiring()).report(), "refused");
}

TEST_F(SingleInstanceLockTest, ALinkInItsPlaceIsNotFollowed)
{
    const QString elsewhere = directories.temporaryDirectory() + u"/elsewhere"_s;
    ASSERT_TRUE(QFile::link(elsewhere, path));
    EXPECT_FALSE(SingleInstanceLock(directories).acquire());
    EXPECT_FALSE(QFileInfo::exists(elsewhere));
}

TEST_F(SingleInstanceLockTest, AFileThatCannotBeOpenedIsRefused)
{
    ASSERT_TRUE(QDir().mkdir(path));
    EXPECT_FALSE(SingleInstanceLock(directories).acquire());
}

} // namespace
} // namespace kestrova
