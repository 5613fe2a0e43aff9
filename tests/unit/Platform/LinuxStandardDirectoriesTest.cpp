#include "Platform/Linux/Files/LinuxStandardDirectories.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Files/XdgDirectories.h"
#include "support/OrdinaryUser.h"
#include "support/QtPrinting.h"
#include "support/Umask.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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

    mode_t mode() const { return modeOf(expected); }

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

TEST_F(LinuxStandardDirectoriesTest, ItIsTheUsersAloneWhateverTheUmaskIs)
{
    const OrdinaryUser user(root);
    const QString folder = root.filePath(u"kestrova-%1"_s.arg(geteuid()));
    for (const mode_t mask : {0, 0777}) {
        const Umask umask(mask);
        EXPECT_EQ(directories.temporaryDirectory(), folder);
        EXPECT_EQ(modeOf(folder), 0700U);
        ASSERT_TRUE(QDir().rmdir(folder));
    }
}

class RuntimeDirectory : public LinuxStandardDirectoriesTest
{
protected:
    void SetUp() override
    {
        LinuxStandardDirectoriesTest::SetUp();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(root.path()));
    }
    void TearDown() override
    {
        old.isNull() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", old);
        LinuxStandardDirectoriesTest::TearDown();
    }

    const QByteArray old = qgetenv("XDG_RUNTIME_DIR");
    const QString common = u"/tmp/kestrova-%1"_s.arg(geteuid());
};

TEST_F(RuntimeDirectory, DoesNotDependOnTheFolderForTemporaryFiles)
{
    EXPECT_EQ(directories.runtimeDirectory(), root.filePath(u"kestrova"_s));
    EXPECT_EQ(modeOf(root.filePath(u"kestrova"_s)), 0700U);
    qputenv("TMPDIR", "/nonexistent");
    EXPECT_EQ(directories.runtimeDirectory(), root.filePath(u"kestrova"_s));
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(directories.runtimeDirectory(), common);
}

TEST_F(RuntimeDirectory, WhatIsNoFolderOfTheUsersIsNotTaken)
{
    QStringList others{QString(), u"relative"_s, u"/nonexistent"_s, u"/dev/null"_s};
    if (geteuid() != 0) {
        others.append(u"/"_s);
    } else {
        others.append(root.filePath(u"given-away"_s));
        ASSERT_TRUE(QDir().mkdir(others.last()));
        ASSERT_EQ(chown(QFile::encodeName(others.last()).constData(), 65534, 65534), 0);
    }
    for (const QString &other : others) {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(other));
        EXPECT_EQ(directories.runtimeDirectory(), common) << other.toStdString();
    }
}

TEST_F(RuntimeDirectory, WhatStandsInItsPlaceIsRefused)
{
    ASSERT_TRUE(QFile::link(u"/tmp"_s, root.filePath(u"kestrova"_s)));
    EXPECT_THROW(directories.runtimeDirectory(), PlatformError);
}

TEST_F(LinuxStandardDirectoriesTest, ApplicationDataFollowsTheDesktopsConvention)
{
    const QByteArray old = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", "/data/home");
    EXPECT_EQ(directories.applicationSupportDirectory(), u"/data/home"_s);
    qputenv("XDG_DATA_HOME", "relative");
    EXPECT_EQ(directories.applicationSupportDirectory(), QDir::homePath() + u"/.local/share"_s);
    old.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", old);
}

TEST_F(LinuxStandardDirectoriesTest, ARelativeConfigurationFolderIsIgnored)
{
    const QByteArray old = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(documentDirectory(), QDir::homePath() + u"/.config/kestrova"_s);
    qputenv("XDG_CONFIG_HOME", "/configuration");
    EXPECT_EQ(documentDirectory(), u"/configuration/kestrova"_s);
    old.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", old);
}

} // namespace
} // namespace kestrova
