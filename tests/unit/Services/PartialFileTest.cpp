#include "Services/Model/PartialFile.h"

#include "Models/ReadableError.h"
#include "Services/FileSizeLimit.h"
#include "Services/TestFiles.h"
#include "support/FailingSystemCall.h"
#include "support/QtPrinting.h"
#include "support/Umask.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/syscall.h>

#include <cerrno>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class PartialFileInFolder : public testing::Test
{
protected:
    QTemporaryDir folder;
    const QString destination = folder.filePath(u"m.bin"_s);
};

TEST_F(PartialFileInFolder, StandsBesideItsDestinationUntilItIsMovedThere)
{
    PartialFile file(destination);
    file.append("abc", 3);
    file.append("def", 3);
    const QStringList names = namesIn(folder.path());
    ASSERT_EQ(names.size(), 1);
    EXPECT_TRUE(names[0].startsWith(u".m.bin-"_s) && names[0].endsWith(u".part"_s));
    EXPECT_EQ(file.size(), 6);

    file.moveTo(destination);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(u"m.bin"_s));
    EXPECT_EQ(readFile(destination), "abcdef");
}

TEST_F(PartialFileInFolder, IsTheUsersAloneWhateverTheUmaskIs)
{
    for (const mode_t mask : {0, 0777}) {
        const Umask umask(mask);
        PartialFile file(destination);
        EXPECT_EQ(modeOf(file.path()), 0600U);
        file.moveTo(destination);
        EXPECT_EQ(modeOf(destination), 0600U);
    }
}

TEST_F(PartialFileInFolder, AFileSystemWithoutLocksWillDo)
{
    ASSERT_TRUE(writeFile(folder.filePath(u".m.bin-01234567.part"_s), "may be somebody's"));
    ASSERT_TRUE(writeFile(folder.filePath(u".m.bin-89abcdef.part"_s), "left by a killed program"));
    ASSERT_TRUE(makeOld(folder.filePath(u".m.bin-89abcdef.part"_s), 2));
    std::thread([this] {
        ASSERT_TRUE(failSystemCall(SYS_flock, ENOLCK));
        PartialFile file(destination);
        file.append("abc", 3);
        file.moveTo(destination);
    }).join();
    EXPECT_EQ(readFile(destination), "abc");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(u".m.bin-01234567.part"_s, u"m.bin"_s));
}

TEST_F(PartialFileInFolder, ReplacesTheFileThatStandsThere)
{
    ASSERT_TRUE(writeFile(destination, "old"));
    PartialFile file(destination);
    file.append("new", 3);
    file.moveTo(destination);
    EXPECT_EQ(readFile(destination), "new");
}

TEST_F(PartialFileInFolder, IsDeletedUnlessMoved)
{
    {
        PartialFile file(destination);
        file.append("abc", 3);
    }
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(PartialFileInFolder, RestartedItHoldsOnlyWhatComesAfter)
{
    PartialFile file(destination);
    file.append("abcdef", 6);
    file.restart();
    EXPECT_EQ(file.size(), 0);
    file.append("xy", 2);
    file.moveTo(destination);
    EXPECT_EQ(readFile(destination), "xy");
}

TEST_F(PartialFileInFolder, AbandonedOnesOfTheSameDestinationAreDeletedAndNothingElse)
{
    const QStringList kept = {u".m.bin-1.txt"_s, u".other.bin-01234567.part"_s,
                              u"m.bin-01234567.part"_s};
    for (const QString &name : kept)
        ASSERT_TRUE(writeFile(folder.filePath(name), "x"));
    ASSERT_TRUE(writeFile(folder.filePath(u".m.bin-01234567.part"_s), "left by a killed program"));
    {
        PartialFile file(destination);
    }
    EXPECT_THAT(namesIn(folder.path()), testing::UnorderedElementsAreArray(kept));
}

TEST_F(PartialFileInFolder, ALiveOneIsNotTakenForAbandoned)
{
    PartialFile first(destination);
    first.append("first", 5);
    PartialFile second(destination);
    EXPECT_TRUE(first.isOnDisk());
    first.moveTo(destination);
    EXPECT_EQ(readFile(destination), "first");
}

TEST_F(PartialFileInFolder, KnowsWhenSomethingElseHasRemovedIt)
{
    PartialFile file(destination);
    EXPECT_TRUE(file.isOnDisk());
    QFile::remove(folder.filePath(namesIn(folder.path()).value(0)));
    EXPECT_FALSE(file.isOnDisk());
    EXPECT_THROW(file.moveTo(destination), PlatformError);
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(PartialFileInFolder, AFullDiskIsAnErrorThatNamesTheDestinationAndGivesTheSpaceBack)
{
    PartialFile file(destination);
    file.append("abc", 3);
    const QByteArray tooMuch(8192, 'x');
    const FileSizeLimit limit(4096);
    try {
        file.append(tooMuch.constData(), tooMuch.size());
        FAIL() << "no error";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.errorDescription(), destination + u": File too large"_s);
    }
    EXPECT_EQ(file.size(), 0);
    EXPECT_EQ(QFileInfo(folder.filePath(namesIn(folder.path()).value(0))).size(), 0);
}

TEST_F(PartialFileInFolder, AFolderThatCannotBeWrittenIsAnError)
{
    EXPECT_THROW(PartialFile(folder.filePath(u"missing/m.bin"_s)), PlatformError);
    // Not even root creates files here.
    EXPECT_THROW(PartialFile(u"/proc/self/m.bin"_s), PlatformError);
}

} // namespace
} // namespace kestrova
