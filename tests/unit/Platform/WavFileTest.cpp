#include "Platform/Linux/Audio/WavFile.h"

#include "Models/ReadableError.h"
#include "Services/FileSizeLimit.h"
#include "support/Umask.h"
#include "support/WavSamples.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class WavFileTest : public testing::Test
{
protected:
    static std::span<const std::byte> bytes(const std::vector<qint16> &samples)
    {
        return std::as_bytes(std::span(samples));
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"recording.wav"_s);
};

TEST_F(WavFileTest, IsAValidFileBeforeTheFirstSample)
{
    const WavFile file(path, {});
    EXPECT_THAT(completeWavSamples(path), Optional(IsEmpty()));
}

TEST_F(WavFileTest, IsAValidFileAfterEachBlock)
{
    WavFile file(path, {});
    ASSERT_TRUE(file.append(bytes({1, -2})));
    EXPECT_THAT(completeWavSamples(path), Optional(ElementsAre(1, -2)));
    ASSERT_TRUE(file.append(bytes({32767, -32768, 5})));
    EXPECT_THAT(completeWavSamples(path), Optional(ElementsAre(1, -2, 32767, -32768, 5)));
    EXPECT_EQ(file.frameCount(), 5);
}

TEST_F(WavFileTest, IsTheSameFileAfterItWasClosed)
{
    WavFile(path, {}).append(bytes({7, 8, 9}));
    EXPECT_THAT(completeWavSamples(path), Optional(ElementsAre(7, 8, 9)));
}

TEST_F(WavFileTest, SilenceTakesItsTime)
{
    constexpr std::size_t frames = 10'000;
    WavFile file(path, {});
    ASSERT_TRUE(file.append(bytes({3})));
    ASSERT_TRUE(file.appendSilence(2 * frames));
    std::vector<qint16> expected(1 + frames);
    expected.front() = 3;
    EXPECT_THAT(completeWavSamples(path), Optional(expected));
}

TEST_F(WavFileTest, IsForTheUserAloneWhateverTheUmaskIs)
{
    for (const mode_t mask : {0, 0777}) {
        const Umask umask(mask);
        const WavFile file(path, {});
        EXPECT_EQ(modeOf(path), 0600U);
        ASSERT_TRUE(QFile::remove(path));
    }
}

TEST_F(WavFileTest, AFileThatIsThereAlreadyIsLeftAlone)
{
    ASSERT_TRUE(writeFile(path, "mine"));
    EXPECT_THROW(WavFile(path, {}), PlatformError);
    EXPECT_EQ(readFile(path), "mine");
}

TEST_F(WavFileTest, ALinkIsNotFollowed)
{
    const QString target = folder.filePath(u"target"_s);
    ASSERT_TRUE(QFile::link(target, path));
    EXPECT_THROW(WavFile(path, {}), PlatformError);
    EXPECT_FALSE(QFile::exists(target));
}

TEST_F(WavFileTest, TheErrorNamesTheFileThatCannotBeCreated)
{
    const QString nowhere = folder.filePath(u"missing/recording.wav"_s);
    try {
        WavFile(nowhere, {});
        ADD_FAILURE() << "no failure";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.errorDescription(), nowhere + u": No such file or directory"_s);
    }
}

TEST_F(WavFileTest, WhereNotEvenTheHeaderFitsThereIsNoFile)
{
    const FileSizeLimit limit(20);
    EXPECT_THROW(WavFile(path, {}), PlatformError);
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(WavFileTest, AFullDiskLeavesAValidFileOfWholeFrames)
{
    WavFile file(path, {});
    ASSERT_TRUE(file.append(bytes({1, 2})));
    {
        const FileSizeLimit limit(44 + 2 * 3 + 1); // Half of the fourth sample fits.
        EXPECT_FALSE(file.append(bytes({3, 4, 5})));
        EXPECT_THAT(completeWavSamples(path), Optional(ElementsAre(1, 2, 3)));
        EXPECT_EQ(file.frameCount(), 3);
    }
}

TEST_F(WavFileTest, AFullDiskLeavesAValidFileAlsoWhenItIsClosed)
{
    const FileSizeLimit limit(44 + 1);
    {
        WavFile file(path, {});
        EXPECT_FALSE(file.append(bytes({3, 4, 5})));
    }
    EXPECT_THAT(completeWavSamples(path), Optional(IsEmpty()));
}

} // namespace
} // namespace kestrova
