#include "Platform/RecorderTest.h"

#include "Models/ReadableError.h"
#include "support/QtPrinting.h"

#include <atomic>
#include <csignal>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::Each;
using testing::IsEmpty;
using testing::Optional;

/// How old the last sample of a recording may be when it is stopped. Speech has died away for
/// longer than that before a key is pressed.
constexpr double lostTailLimit = 0.015; // seconds

/// The header first, as any reader does: what it speaks of is there by then.
QByteArray readWhileItGrows(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    const QByteArray header = file.read(44);
    return header + file.readAll();
}

class PulseAudioRecorderTest : public RecorderTest
{
};

TEST_F(PulseAudioRecorderTest, WhatIsHeardIsInTheFileSampleBySample)
{
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    EXPECT_TRUE(recorder->isRecording());
    ASSERT_TRUE(record(*recorder, 1));
    recorder->stop();
    EXPECT_FALSE(recorder->isRecording());
    expectUnbrokenRamp(*recorder);
}

TEST_F(PulseAudioRecorderTest, WhatWasHeardJustBeforeTheStopIsInTheFile)
{
    RampPlayer player(VirtualSound::exactSink);
    for (int i = 0; i < 10; ++i) {
        const auto recorder = makeRecorder(QString::number(i));
        ASSERT_TRUE(recorder->record());
        ASSERT_TRUE(record(*recorder, 0.1 + 0.003 * i));
        const qint64 heard = player.position();
        recorder->stop();
        const std::vector<qint16> recorded = samples(*recorder);
        ASSERT_FALSE(recorded.empty());
        qint64 lost = heard % RampPlayer::period - RampPlayer::numberOf(recorded.back());
        if (lost > RampPlayer::period / 2)
            lost -= RampPlayer::period;
        EXPECT_LE(static_cast<double>(lost) / RampPlayer::sampleRate, lostTailLimit);
    }
}

TEST_F(PulseAudioRecorderTest, TheFileIsValidAtEveryMoment)
{
    const auto recorder = makeRecorder();
    const QString path = recorder->url().toLocalFile();
    ASSERT_TRUE(recorder->prepareToRecord());
    EXPECT_THAT(completeWavSamples(path), Optional(IsEmpty()));
    ASSERT_TRUE(recorder->record());
    std::size_t size = 0;
    while (recorder->currentTime() < 1) {
        const auto copy = wavSamples(readWhileItGrows(path));
        ASSERT_TRUE(copy);
        ASSERT_GE(copy->size(), size);
        size = copy->size();
    }
    EXPECT_GT(size, 0U);
    recorder->stop();
    EXPECT_EQ(static_cast<double>(samples(*recorder).size()) / 16000, recorder->currentTime());
}

TEST(PulseAudioRecorderProcessTest, AKilledProgramLeavesAValidFile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"1.wav"_s);
    const pid_t child = fork();
    if (child == 0) {
        PulseAudioInput input;
        const auto recorder = input.makeRecorder(QUrl::fromLocalFile(path), {});
        if (!recorder->record())
            _exit(1);
        while (true)
            pause();
    }
    EXPECT_TRUE(waitUntil([&] { return readFile(path).size() > 10'000; }));
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    const auto recorded = wavSamples(readFile(path));
    ASSERT_TRUE(recorded);
    EXPECT_GT(recorded->size(), 4'000U);
}

TEST_F(PulseAudioRecorderTest, EachRecordingHasItsOwnFile)
{
    const RampPlayer player(VirtualSound::exactSink);
    for (const QString &name : {u"1.wav"_s, u"2.wav"_s}) {
        const auto recorder = makeRecorder(name);
        ASSERT_TRUE(recorder->record());
        ASSERT_TRUE(record(*recorder, 0.2));
        recorder->stop();
        expectUnbrokenRamp(*recorder);
    }
    EXPECT_EQ(namesIn(folder.path()), (QStringList{u"1.wav"_s, u"2.wav"_s}));
}

TEST_F(PulseAudioRecorderTest, ARecorderRecordsOnce)
{
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.1));
    recorder->stop();
    const QByteArray bytes = readFile(recorder->url().toLocalFile());
    EXPECT_FALSE(recorder->record());
    EXPECT_EQ(readFile(recorder->url().toLocalFile()), bytes);
}

TEST_F(PulseAudioRecorderTest, AFileThatIsThereAlreadyIsNotRecordedTo)
{
    const auto recorder = makeRecorder();
    ASSERT_TRUE(writeFile(recorder->url().toLocalFile(), "mine"));
    EXPECT_FALSE(recorder->record());
    EXPECT_FALSE(recorder->isRecording());
    recorder->stop();
    EXPECT_EQ(readFile(recorder->url().toLocalFile()), "mine");
}

TEST_F(PulseAudioRecorderTest, AMutedMicrophoneRecordsSilence)
{
    VirtualSound::pactl(
        {u"set-source-mute"_s, QString::fromUtf8(VirtualSound::exactMicrophone), u"1"_s});
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.3));
    recorder->stop();
    EXPECT_THAT(samples(*recorder), Each(0));
}

TEST_F(PulseAudioRecorderTest, WhatIsBeingPlayedIsNotTheMicrophone)
{
    VirtualSound::pactl({u"set-default-source"_s, u"exact.monitor"_s});
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.2));
    recorder->stop();
    // The desktop's other microphone, which comes first and hears nothing now.
    EXPECT_THAT(samples(*recorder), Each(0));
}

TEST_F(PulseAudioRecorderTest, AnAbandonedRecorderStopsListeningAndLeavesItsFile)
{
    const RampPlayer player(VirtualSound::exactSink);
    auto recorder = makeRecorder();
    const QString path = recorder->url().toLocalFile();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.2));
    EXPECT_EQ(VirtualSound::recordingCount(), 1);
    recorder.reset();
    const auto recorded = completeWavSamples(path);
    ASSERT_TRUE(recorded);
    EXPECT_GE(recorded->size(), 3'200U);
    EXPECT_TRUE(waitUntil([] { return VirtualSound::recordingCount() == 0; }));
}

TEST_F(PulseAudioRecorderTest, MayBeAskedWhileItStartsAndStops)
{
    const auto recorder = makeRecorder();
    std::atomic<bool> isDone = false;
    std::thread observer([&] {
        double time = 0;
        bool wasRecording = false;
        while (!isDone) {
            wasRecording = wasRecording || recorder->isRecording();
            EXPECT_GE(recorder->currentTime(), time);
            time = recorder->currentTime();
        }
        EXPECT_TRUE(wasRecording);
    });
    EXPECT_TRUE(recorder->record());
    EXPECT_TRUE(record(*recorder, 0.3));
    std::thread([&] { recorder->stop(); }).join();
    isDone = true;
    observer.join();
    EXPECT_FALSE(recorder->isRecording());
}

TEST_F(PulseAudioRecorderTest, OnlyTheOneFormatIsAccepted)
{
    const QUrl url = QUrl::fromLocalFile(folder.filePath(u"1.wav"_s));
    EXPECT_THROW(input.makeRecorder(url, {.sampleRate = 44100}), PlatformError);
    EXPECT_THROW(input.makeRecorder(url, {.channelCount = 2}), PlatformError);
    EXPECT_THROW(input.makeRecorder(url, {.bitDepth = 24}), PlatformError);
    EXPECT_THROW(input.makeRecorder(url, {.isFloat = true}), PlatformError);
    EXPECT_THROW(input.makeRecorder(url, {.isBigEndian = true}), PlatformError);
    EXPECT_THROW(input.makeRecorder(QUrl(u"https://localhost/1.wav"_s), {}), PlatformError);
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

} // namespace
} // namespace kestrova
