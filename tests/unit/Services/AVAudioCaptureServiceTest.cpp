#include "Services/Dictation/AVAudioCaptureService.h"
#include "Models/KestrovaError.h"
#include "Platform/Fake/Audio/FakeAudioInput.h"
#include "Platform/Fake/FakeStandardDirectories.h"
#include "support/QtPrinting.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class AVAudioCaptureServiceTest : public testing::Test
{
protected:
    template <typename Operation>
    void expectFailure(Operation operation, KestrovaError::Kind kind, const QString &message)
    {
        try {
            operation();
            ADD_FAILURE() << "no failure";
        } catch (const KestrovaError &error) {
            EXPECT_EQ(error.kind(), kind);
            EXPECT_EQ(error.errorDescription(), message);
        }
    }

    void expectSecondStartFails()
    {
        expectFailure([this] { service.startRecording(); }, KestrovaError::Kind::invalidState,
                      u"Recording is already active."_s);
    }

    void expectStopFails()
    {
        expectFailure([this] { service.stopRecording(); }, KestrovaError::Kind::invalidState,
                      u"No active recording to stop."_s);
    }

    void expectStartFails()
    {
        expectFailure([this] { service.startRecording(); }, KestrovaError::Kind::processFailed,
                      u"Could not start audio recording."_s);
    }

    FakeAudioInput input;
    FakeStandardDirectories directories;
    AVAudioCaptureService service{input, directories};
};

TEST_F(AVAudioCaptureServiceTest, ADictationUsesTheRecorderInTheRequiredOrder)
{
    EXPECT_FALSE(service.isRecording());
    service.startRecording();
    EXPECT_TRUE(service.isRecording());
    EXPECT_EQ(input.calls(),
              (QStringList{u"setMeteringEnabled false"_s, u"prepareToRecord"_s, u"record"_s}));

    service.stopRecording();
    EXPECT_FALSE(service.isRecording());
    EXPECT_EQ(input.calls().mid(3),
              (QStringList{u"stop"_s, u"url"_s, u"currentTime"_s, u"released"_s}));
}

TEST_F(AVAudioCaptureServiceTest, TheRecorderIsAskedFor16kHzMono16BitLittleEndianIntegers)
{
    service.startRecording();
    ASSERT_EQ(input.creations().size(), 1);
    const RecordingFormat format = input.creations().first().format;
    EXPECT_EQ(format.sampleRate, 16000);
    EXPECT_EQ(format.channelCount, 1);
    EXPECT_EQ(format.bitDepth, 16);
    EXPECT_FALSE(format.isFloat);
    EXPECT_FALSE(format.isBigEndian);
}

TEST_F(AVAudioCaptureServiceTest, TheFileIsNamedByAnUpperCaseUuidInTheTemporaryDirectory)
{
    service.startRecording();
    const QUrl fileURL = service.stopRecording().fileURL;
    ASSERT_TRUE(fileURL.isLocalFile());
    EXPECT_EQ(fileURL, input.creations().first().fileURL);
    EXPECT_EQ(fileURL.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash).toLocalFile(),
              directories.temporaryDirectory());
    const QString uuid = u"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"_s;
    EXPECT_TRUE(
        QRegularExpression(u"^kestrova-%1\\.wav$"_s.arg(uuid)).match(fileURL.fileName()).hasMatch())
        << fileURL.fileName().toStdString();
}

TEST_F(AVAudioCaptureServiceTest, EachRecordingGetsANewFileAndTheEarlierOneStays)
{
    service.startRecording();
    QFile first(service.stopRecording().fileURL.toLocalFile());
    ASSERT_TRUE(first.open(QIODevice::WriteOnly | QIODevice::NewOnly));

    service.startRecording();
    EXPECT_NE(service.stopRecording().fileURL.toLocalFile(), first.fileName());
    EXPECT_TRUE(first.exists());
}

TEST_F(AVAudioCaptureServiceTest, TheDurationIsWhatTheStoppedRecorderReports)
{
    input.setRecordedSeconds(3.25); // a running fake recorder says 0
    service.startRecording();
    EXPECT_EQ(service.stopRecording().durationSeconds, 3.25);
}

TEST_F(AVAudioCaptureServiceTest, ASecondStartFailsAndTheFirstRecordingGoesOn)
{
    service.startRecording();
    const QStringList before = input.calls();
    expectSecondStartFails();
    EXPECT_TRUE(service.isRecording());
    EXPECT_EQ(input.calls(), before);
    EXPECT_EQ(service.stopRecording().fileURL, input.creations().first().fileURL);
    EXPECT_EQ(input.creations().size(), 1);
}

TEST_F(AVAudioCaptureServiceTest, AStopWithoutAStartFails)
{
    expectStopFails();
    service.startRecording();
    service.stopRecording();
    expectStopFails();
}

TEST_F(AVAudioCaptureServiceTest, ARefusedRecorderPassesTheErrorOnAndChangesNothing)
{
    input.failCreation(u"This machine records at 44.1 kHz only."_s);
    try {
        service.startRecording();
        ADD_FAILURE() << "no failure";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.errorDescription(), u"This machine records at 44.1 kHz only."_s);
    }
    EXPECT_FALSE(service.isRecording());
    EXPECT_TRUE(input.calls().isEmpty());
    expectStopFails();
}

TEST_F(AVAudioCaptureServiceTest, WithoutATemporaryDirectoryNoRecorderIsMade)
{
    directories.failTemporaryDirectory(u"/tmp/kestrova: it belongs to somebody else."_s);
    EXPECT_THROW(service.startRecording(), PlatformError);
    EXPECT_TRUE(input.creations().isEmpty());
    EXPECT_FALSE(service.isRecording());
}

TEST_F(AVAudioCaptureServiceTest, AFailedPreparationIsLeftToRecord)
{
    input.setPrepareSucceeds(false);
    service.startRecording();
    EXPECT_TRUE(service.isRecording());
}

TEST_F(AVAudioCaptureServiceTest, AFailedStartReleasesTheNewRecorderAndLeavesTheServiceIdle)
{
    input.setRecordSucceeds(false);
    expectStartFails();
    EXPECT_FALSE(service.isRecording());
    EXPECT_EQ(input.calls().last(), u"released"_s);
    expectStopFails();

    input.setRecordSucceeds(true);
    service.startRecording();
    EXPECT_TRUE(service.isRecording());
}

TEST_F(AVAudioCaptureServiceTest, ARecordingThatEndedByItselfIsHandedOver)
{
    service.startRecording();
    input.endRecordings();
    input.setRecordedSeconds(1.5);
    EXPECT_FALSE(service.isRecording());
    const AudioRecording recording = service.stopRecording();
    EXPECT_EQ(recording.fileURL, input.creations().first().fileURL);
    EXPECT_EQ(recording.durationSeconds, 1.5);
}

TEST_F(AVAudioCaptureServiceTest, AStartReplacesARecordingThatEndedByItself)
{
    service.startRecording();
    input.endRecordings();
    service.startRecording();
    EXPECT_TRUE(service.isRecording());
    EXPECT_EQ(input.calls().last(), u"released"_s);
    EXPECT_EQ(service.stopRecording().fileURL, input.creations().last().fileURL);
}

TEST_F(AVAudioCaptureServiceTest, AFailedStartKeepsARecordingThatEndedByItself)
{
    service.startRecording();
    input.endRecordings();
    input.setRecordSucceeds(false);
    expectStartFails();
    EXPECT_EQ(service.stopRecording().fileURL, input.creations().first().fileURL);
}

TEST_F(AVAudioCaptureServiceTest, DestroyingTheServiceReleasesTheRecorderWithoutAStop)
{
    {
        AVAudioCaptureService shortLived(input, directories);
        shortLived.startRecording();
    }
    EXPECT_EQ(input.calls().last(), u"released"_s);
    EXPECT_FALSE(input.calls().contains(u"stop"_s));
}

} // namespace
} // namespace kestrova
