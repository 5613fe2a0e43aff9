#include "Platform/FileSystem.h"
#include "support/FailingSystemCall.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/syscall.h>

#include <cerrno>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class ReplaceFileDurably : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        write(from, "new");
        write(to, "old");
    }

    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }

    const QTemporaryDir folder;
    const QString from = folder.filePath(u"from"_s);
    const QString to = folder.filePath(u"to"_s);
};

TEST_F(ReplaceFileDurably, TheOldFileIsReplaced)
{
    replaceFileDurably(from, to);
    EXPECT_EQ(bytesOf(to), "new");
    EXPECT_FALSE(QFile::exists(from));
}

TEST_F(ReplaceFileDurably, InAReadOnlyFolderBothFilesStay)
{
    ASSERT_TRUE(QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user(folder);
        EXPECT_THROW(replaceFileDurably(from, to), PlatformError);
    }
    EXPECT_EQ(bytesOf(to), "old");
    EXPECT_EQ(bytesOf(from), "new");
    ASSERT_TRUE(QFile::setPermissions(folder.path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

TEST_F(ReplaceFileDurably, AFolderIsNotReplaced)
{
    const QString taken = folder.filePath(u"taken"_s);
    ASSERT_TRUE(QDir().mkpath(taken));
    EXPECT_THROW(replaceFileDurably(from, taken), PlatformError);
    EXPECT_EQ(bytesOf(from), "new");
}

TEST_F(ReplaceFileDurably, WithoutTheFileTheOldOneStays)
{
    EXPECT_THROW(replaceFileDurably(folder.filePath(u"missing"_s), to), PlatformError);
    EXPECT_EQ(bytesOf(to), "old");
}

TEST_F(ReplaceFileDurably, AFolderThatCannotBeSyncedIsAnErrorThatNamesIt)
{
    QString problem;
    std::thread([&] {
        ASSERT_TRUE(failSystemCall(SYS_fsync, EIO));
        try {
            replaceFileDurably(from, to);
        } catch (const PlatformError &error) {
            problem = error.errorDescription();
        }
    }).join();
    EXPECT_TRUE(problem.startsWith(folder.path() + u": "_s)) << problem.toStdString();
    EXPECT_EQ(bytesOf(to), "new") << "it stands for the new file all the same";
}

} // namespace
} // namespace kestrova
