#include "Platform/Posix/FileUserDefaults.h"
#include "Models/ReadableError.h"
#include "Services/FileSizeLimit.h"
#include "Services/TestFiles.h"
#include "support/KilledWriter.h"
#include "support/OrdinaryUser.h"
#include "support/QtPrinting.h"
#include "support/Umask.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <random>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;

class FileUserDefaultsTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return directory + u'/' + name; }

    QStringList files() const { return QDir(directory).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir root;
    const QString directory = root.filePath(u"config/kestrova"_s);
    FileUserDefaults defaults{directory};
    const QString key = u"kestrova.settings.v1"_s;
};

TEST_F(FileUserDefaultsTest, EachKeyIsOneFileThatOnlyTheUserMayRead)
{
    EXPECT_FALSE(defaults.data(key));
    defaults.setData(key, "one");
    defaults.setData(u"other"_s, "");
    EXPECT_EQ(defaults.data(key), QByteArray("one"));
    EXPECT_EQ(defaults.data(u"other"_s), QByteArray(""));
    EXPECT_EQ(files(), QStringList({u"kestrova.settings.v1.json"_s, u"other.json"_s}));
}

TEST_F(FileUserDefaultsTest, WhateverTheUmaskIsNobodyElseGetsAtIt)
{
    const OrdinaryUser user(root);
    for (const mode_t mask : {0, 0777}) {
        const Umask umask(mask);
        defaults.setData(key, "settings");
        EXPECT_EQ(modeOf(path(files().first())), 0600U);
        EXPECT_EQ(modeOf(directory), 0700U);
        EXPECT_EQ(modeOf(root.filePath(u"config"_s)), 0700U);
        ASSERT_TRUE(QDir(root.filePath(u"config"_s)).removeRecursively());
    }
}

TEST_F(FileUserDefaultsTest, ReplacingKeepsTheFilePrivateAndLeavesNothingElse)
{
    defaults.setData(key, "one");
    QFile::setPermissions(path(files().first()),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    defaults.setData(key, "two");
    EXPECT_EQ(defaults.data(key), QByteArray("two"));
    EXPECT_EQ(files().size(), 1);
    EXPECT_FALSE(QFile::permissions(path(files().first())) & QFile::ReadOther);
}

TEST_F(FileUserDefaultsTest, ALinkedDocumentIsReplacedWhereItReallyIs)
{
    const QString real = root.filePath(u"dotfiles.json"_s);
    QDir().mkpath(directory);
    ASSERT_TRUE(writeFile(real, "old"));
    ASSERT_TRUE(QFile::link(real, path(key + u".json"_s)));
    defaults.setData(key, "new");
    EXPECT_EQ(readFile(real), "new");
    EXPECT_TRUE(QFileInfo(path(key + u".json"_s)).isSymLink());
}

TEST_F(FileUserDefaultsTest, ALinkToNothingYetIsFollowedToo)
{
    const QString real = root.filePath(u"dotfiles.json"_s);
    QDir().mkpath(directory);
    ASSERT_TRUE(QFile::link(real, path(u"link.json"_s)));
    ASSERT_TRUE(QFile::link(path(u"link.json"_s), path(key + u".json"_s)));
    defaults.setData(key, "new");
    EXPECT_EQ(readFile(real), "new");
    EXPECT_EQ(defaults.data(key), QByteArray("new"));
    EXPECT_TRUE(QFileInfo(path(key + u".json"_s)).isSymLink());
}

TEST_F(FileUserDefaultsTest, WhatAKilledWriterLeftIsRemovedOnceNoWriteTakesThatLong)
{
    const QStringList kept{key + u".json"_s, key + u".json.backup"_s,
                           key + u".json.unfinished-young"_s, u"other.json.unfinished-old"_s};
    const QString abandoned = key + u".json.unfinished-old"_s;
    QDir().mkpath(directory);
    for (const QString &name : kept + QStringList{abandoned})
        writeFile(path(name), name.toUtf8());
    for (const QString &name : {kept[1], kept[3], abandoned})
        ASSERT_TRUE(makeOld(path(name)));
    defaults.setData(key, "new");
    EXPECT_EQ(files(), kept);
}

TEST_F(FileUserDefaultsTest, BytesSetAsideOutliveEveryLaterChange)
{
    defaults.setAside(key);
    EXPECT_FALSE(QDir(directory).exists()) << "there was nothing to keep";

    defaults.setData(key, "damaged");
    defaults.setAside(key);
    defaults.setAside(key);
    defaults.setData(key, "new");
    EXPECT_EQ(readFile(path(u"kestrova.settings.v1.kept-1.json"_s)), "damaged");
    EXPECT_EQ(files().size(), 2) << "the same bytes are kept once";

    defaults.setData(key, "damaged again");
    defaults.setAside(key);
    defaults.setData(key, "newer");
    EXPECT_EQ(readFile(path(u"kestrova.settings.v1.kept-2.json"_s)), "damaged again");
    EXPECT_EQ(readFile(path(u"kestrova.settings.v1.kept-1.json"_s)), "damaged");
    EXPECT_EQ(defaults.data(key), QByteArray("newer"));
}

TEST_F(FileUserDefaultsTest, AVersionStandsForOneStateOfTheDocument)
{
    EXPECT_FALSE(defaults.version(key));
    const DocumentVersion first = defaults.setData(key, "one");
    EXPECT_EQ(defaults.version(key), first);
    EXPECT_EQ(defaults.versionedData(key)->version, first);
    defaults.setAside(key);
    EXPECT_EQ(defaults.version(key), first) << "nothing has been stored meanwhile";

    const DocumentVersion second = defaults.setData(key, "two");
    EXPECT_NE(second, first);
    ASSERT_TRUE(writeFile(path(key + u".json"_s), "changed in place"));
    EXPECT_NE(defaults.version(key), second);
    ASSERT_TRUE(QFile::remove(path(key + u".json"_s)));
    EXPECT_FALSE(defaults.version(key));
}

TEST_F(FileUserDefaultsTest, AFileInAFolderThatMayNotBeEnteredIsNotTakenForNone)
{
    defaults.setData(key, "old");
    const OrdinaryUser user(root);
    ASSERT_EQ(chmod(QFile::encodeName(directory).constData(), 0), 0);
    EXPECT_THROW(defaults.data(key), PlatformError);
    EXPECT_THROW(defaults.version(key), PlatformError);
    EXPECT_THROW(defaults.setData(key, "new"), PlatformError);
    ASSERT_EQ(chmod(QFile::encodeName(directory).constData(), 0700), 0);
    EXPECT_EQ(defaults.data(key), QByteArray("old"));
}

TEST_F(FileUserDefaultsTest, ANamedPipeIsNeitherWaitedForNorReplaced)
{
    const QString pipe = path(key + u".json"_s);
    ASSERT_TRUE(QDir().mkpath(directory));
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_THROW(defaults.data(key), PlatformError);
    EXPECT_THROW(defaults.setAside(key), PlatformError);
    EXPECT_THROW(defaults.setData(key, "x"), PlatformError);

    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(pipe).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    EXPECT_EQ(namesIn(directory).size(), 1);
}

TEST_F(FileUserDefaultsTest, ALinkedDocumentIsSetAsideAsAFile)
{
    const QString real = root.filePath(u"dotfiles.json"_s);
    QDir().mkpath(directory);
    ASSERT_TRUE(writeFile(real, "old"));
    ASSERT_TRUE(QFile::link(real, path(key + u".json"_s)));
    defaults.setAside(key);
    defaults.setData(key, "new");
    EXPECT_EQ(readFile(path(key + u".kept-1.json"_s)), "old");
}

TEST_F(FileUserDefaultsTest, LinksThatLeadNowhereAreAnError)
{
    QDir().mkpath(directory);
    ASSERT_TRUE(QFile::link(path(u"b.json"_s), path(u"a.json"_s)));
    ASSERT_TRUE(QFile::link(path(u"a.json"_s), path(u"b.json"_s)));
    EXPECT_THROW(defaults.data(u"a"_s), PlatformError);
    EXPECT_THROW(defaults.setData(u"a"_s, "x"), PlatformError);
}

TEST_F(FileUserDefaultsTest, SomethingThatIsNoReadableFileIsAnError)
{
    QDir().mkpath(path(key + u".json"_s));
    EXPECT_THROW(defaults.data(key), PlatformError);
    EXPECT_THROW(defaults.setData(key, "x"), PlatformError);
}

TEST_F(FileUserDefaultsTest, AFolderThatCannotBeMadeIsAnError)
{
    ASSERT_TRUE(writeFile(root.filePath(u"config"_s), {}));
    EXPECT_THROW(defaults.setData(key, "x"), PlatformError);
    EXPECT_FALSE(defaults.data(key));
}

TEST_F(FileUserDefaultsTest, AFullDiskLeavesTheOldBytes)
{
    defaults.setData(key, "old");
    {
        const FileSizeLimit limit(1000);
        try {
            defaults.setData(key, QByteArray(5000, 'x'));
            ADD_FAILURE() << "it was stored";
        } catch (const PlatformError &error) {
            EXPECT_THAT(error.what(), HasSubstr(qt_error_string(EFBIG).toStdString()));
        }
    }
    EXPECT_EQ(defaults.data(key), QByteArray("old"));
    EXPECT_EQ(files().size(), 1) << "no half-written file stays behind";
}

TEST_F(FileUserDefaultsTest, AWriterKilledAtAnyMomentLeavesAWholeDocument)
{
    const QByteArray a(200'000, 'a');
    const QByteArray b(300'000, 'b');
    const qint64 longestLife = 4 * durationOf([&] { defaults.setData(key, a); });
    std::minstd_rand random(1);
    qint64 confirmed = 0;
    for (int round = 0; round < 60; ++round) {
        const auto writes = writesUntilKilled(
            [&](const auto &confirm) {
                for (int i = 0;; ++i) {
                    defaults.setData(key, i % 2 == 0 ? b : a);
                    confirm();
                }
            },
            std::chrono::microseconds(random() % longestLife));
        ASSERT_TRUE(writes);
        confirmed += *writes;
        const auto stored = defaults.data(key);
        ASSERT_TRUE(stored == a || stored == b);
    }
    EXPECT_GT(confirmed, 0) << "the writer was never fast enough to be interrupted";
}

} // namespace
} // namespace kestrova
