#include "Platform/Linux/LinuxStandardDirectories.h"
#include "Models/ReadableError.h"
#include "support/QtPrinting.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class LinuxStandardDirectoriesTest : public testing::Test
{
protected:
    void SetUp() override { qputenv("TMPDIR", QFile::encodeName(root.path())); }
    void TearDown() override { qputenv("TMPDIR", oldTemporary); }

    QString problem()
    {
        try {
            directories.temporaryDirectory();
        } catch (const PlatformError &error) {
            return error.errorDescription();
        }
        return u"none"_s;
    }

    mode_t mode() const
    {
        struct stat status = {};
        stat(QFile::encodeName(expected).constData(), &status);
        return status.st_mode & ALLPERMS;
    }

    const QByteArray oldTemporary = qgetenv("TMPDIR");
    QTemporaryDir root;
    const QString expected = root.filePath(u"kestrova-%1"_s.arg(geteuid()));
    LinuxStandardDirectories directories;
};

TEST_F(LinuxStandardDirectoriesTest, TheTemporaryFolderIsTheUsersAlone)
{
    EXPECT_EQ(directories.temporaryDirectory(), expected);
    EXPECT_EQ(mode(), 0700U);
}

TEST_F(LinuxStandardDirectoriesTest, ATemporaryFolderThatACleanerRemovedIsMadeAgain)
{
    directories.temporaryDirectory();
    ASSERT_TRUE(QDir().rmdir(expected));
    EXPECT_EQ(directories.temporaryDirectory(), expected);
    EXPECT_TRUE(QDir(expected).exists());
}

TEST_F(LinuxStandardDirectoriesTest, OpenPermissionsAreClosed)
{
    ASSERT_EQ(mkdir(QFile::encodeName(expected).constData(), 0700), 0);
    ASSERT_EQ(chmod(QFile::encodeName(expected).constData(), 0777), 0);
    directories.temporaryDirectory();
    EXPECT_EQ(mode(), 0700U);
}

TEST_F(LinuxStandardDirectoriesTest, ALinkInItsPlaceIsRefused)
{
    ASSERT_TRUE(QDir(root.path()).mkdir(u"elsewhere"_s));
    ASSERT_TRUE(QFile::link(root.filePath(u"elsewhere"_s), expected));
    EXPECT_EQ(problem(), u"The folder for temporary files, "_s + expected +
                             u", cannot be used: it is not a folder."_s);
}

TEST_F(LinuxStandardDirectoriesTest, AFileInItsPlaceIsRefused)
{
    QFile file(expected);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(problem().endsWith(u"it is not a folder."_s));
}

TEST_F(LinuxStandardDirectoriesTest, AFolderOfAnotherUserIsRefused)
{
    // Root can give the folder away; anybody else looks at one that is root's already.
    if (geteuid() == 0) {
        directories.temporaryDirectory();
        ASSERT_EQ(chown(QFile::encodeName(expected).constData(), 65534, 65534), 0);
        EXPECT_TRUE(problem().endsWith(u"it belongs to another user."_s));
    } else {
        ASSERT_EQ(symlink("/proc", QFile::encodeName(expected).constData()), 0);
        EXPECT_NE(problem(), u"none"_s);
    }
}

TEST_F(LinuxStandardDirectoriesTest, AnUnusableParentIsReported)
{
    qputenv("TMPDIR", "/nonexistent");
    EXPECT_TRUE(problem().contains(u"/nonexistent/kestrova-"_s));
}

TEST_F(LinuxStandardDirectoriesTest, ApplicationDataFollowsTheDesktopsConvention)
{
    const QByteArray old = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", "/data/home");
    EXPECT_EQ(directories.applicationSupportDirectory(), u"/data/home"_s);
    old.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", old);
}

} // namespace
} // namespace kestrova
