#include "Platform/RecorderTest.h"

#include "Services/FileSizeLimit.h"
#include "support/Warnings.h"

#include <atomic>
#include <cerrno>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

class PulseAudioRecorderFailureTest : public RecorderTest
{
protected:
    PulseAudioRecorderFailureTest()
    {
        input.listen({.conditionChanged = {}, .recordingFailed = [this](RecordingProblem told) {
                          problem = told;
                          ++problemCount;
                      }});
    }
    ~PulseAudioRecorderFailureTest() override { input.listen({}); }

    template <typename Operation>
    static steady_clock::duration durationOf(Operation operation)
    {
        const auto begin = steady_clock::now();
        operation();
        return steady_clock::now() - begin;
    }

    static void unload(const QString &module) { VirtualSound::pactl({u"unload-module"_s, module}); }

    void expectNoRecording()
    {
        const auto recorder = makeRecorder(u"none.wav"_s);
        EXPECT_FALSE(recorder->record());
        EXPECT_FALSE(recorder->isRecording());
        recorder->stop();
        EXPECT_EQ(recorder->currentTime(), 0);
        EXPECT_FALSE(QFile::exists(recorder->url().toLocalFile()));
    }

    void expectRecording(const QString &name)
    {
        const auto recorder = makeRecorder(name);
        ASSERT_TRUE(recorder->record());
        EXPECT_TRUE(record(*recorder, 0.1));
        recorder->stop();
        EXPECT_GE(samples(*recorder).size(), 1600U);
    }

    /// With its last sample, whatever ended it.
    void expectEndedByItself(AudioRecorder &recorder)
    {
        EXPECT_TRUE(waitUntil([&] { return !recorder.isRecording(); }));
        const double time = recorder.currentTime();
        recorder.stop();
        EXPECT_EQ(recorder.currentTime(), time);
        expectUnbrokenRamp(recorder);
        EXPECT_EQ(problemCount, 1) << "the user is told, once";
    }

    std::atomic<RecordingProblem> problem{};
    std::atomic<int> problemCount = 0;
};

TEST_F(PulseAudioRecorderFailureTest, WithoutAServerThereIsNoRecordingUntilThereIsOne)
{
    expectRecording(u"1.wav"_s);
    VirtualSound::server(u"stop"_s);
    EXPECT_LT(durationOf([this] { expectNoRecording(); }), 5s);
    VirtualSound::server(u"start"_s);
    expectRecording(u"2.wav"_s);
}

TEST_F(PulseAudioRecorderFailureTest, WithoutASourceThereIsNoRecording)
{
    unload(u"module-remap-source"_s);
    unload(u"module-null-sink"_s);
    expectNoRecording();
}

TEST_F(PulseAudioRecorderFailureTest, WithNothingButMonitorsThereIsNoRecording)
{
    unload(u"module-remap-source"_s);
    expectNoRecording();
}

TEST_F(PulseAudioRecorderFailureTest, ARemovedMicrophoneEndsTheRecording)
{
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.3));
    unload(u"module-remap-source"_s);
    expectEndedByItself(*recorder);
    EXPECT_EQ(problem, RecordingProblem::microphoneLost);
}

TEST_F(PulseAudioRecorderFailureTest, ARecordingThatIsMovedToWhatIsBeingPlayedEndsWithoutIt)
{
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.3));
    // It is silent there, which would break the ramp.
    VirtualSound::moveRecording(u"kestrova_speakers.monitor"_s);
    expectEndedByItself(*recorder);
    EXPECT_EQ(problem, RecordingProblem::microphoneLost);
}

TEST_F(PulseAudioRecorderFailureTest, ARecordingThatIsMovedToAnotherMicrophoneGoesOn)
{
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.1));
    VirtualSound::moveRecording(u"kestrova_microphone"_s);
    EXPECT_TRUE(record(*recorder, 0.3));
    EXPECT_TRUE(recorder->isRecording());
    recorder->stop();
    EXPECT_GE(samples(*recorder).size(), 6400U);
}

TEST_F(PulseAudioRecorderFailureTest, AKilledServerEndsTheRecording)
{
    auto player = std::make_unique<RampPlayer>(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.3));
    VirtualSound::server(u"stop"_s);
    expectEndedByItself(*recorder);
    EXPECT_EQ(problem, RecordingProblem::microphoneLost);
}

TEST_F(PulseAudioRecorderFailureTest, AHungServerIsNotWaitedForAtTheStart)
{
    expectRecording(u"1.wav"_s);
    VirtualSound::server(u"freeze"_s);
    EXPECT_LT(durationOf([this] { expectNoRecording(); }), 20s);
    VirtualSound::server(u"thaw"_s);
    expectRecording(u"2.wav"_s);
    EXPECT_TRUE(waitUntil([] { return VirtualSound::recordingCount() == 0; }));
}

TEST_F(PulseAudioRecorderFailureTest, AHungServerIsNotWaitedForAtTheStop)
{
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.3));
    VirtualSound::server(u"freeze"_s);
    EXPECT_LT(durationOf([&] { recorder->stop(); }), 5s);
    expectUnbrokenRamp(*recorder);
    VirtualSound::server(u"thaw"_s);
}

TEST_F(PulseAudioRecorderFailureTest, NothingIsLostWhileTheServerHangs)
{
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    ASSERT_TRUE(recorder->record());
    ASSERT_TRUE(record(*recorder, 0.3));
    VirtualSound::server(u"freeze"_s);
    std::this_thread::sleep_for(700ms); // What is tested is how long it hangs.
    VirtualSound::server(u"thaw"_s);
    EXPECT_TRUE(record(*recorder, 1));
    EXPECT_TRUE(recorder->isRecording());
    recorder->stop();
    expectUnbrokenRamp(*recorder);
}

TEST_F(PulseAudioRecorderFailureTest, AFullDiskEndsTheRecording)
{
    const RampPlayer player(VirtualSound::exactSink);
    const auto recorder = makeRecorder();
    constexpr rlim_t bytes = 44 + 10'000;
    const FileSizeLimit limit(bytes + 1);
    const Warnings warnings;
    ASSERT_TRUE(recorder->record());
    expectEndedByItself(*recorder);
    EXPECT_EQ(QFile(recorder->url().toLocalFile()).size(), bytes);
    EXPECT_EQ(problem, RecordingProblem::fileNotWritten);
    EXPECT_TRUE(warnings.all().startsWith(u"A recording could not be written any further: "_s));
    EXPECT_TRUE(warnings.all().contains(qt_error_string(EFBIG))) << qPrintable(warnings.all());
}

TEST_F(PulseAudioRecorderFailureTest, ADiskWithoutRoomForTheHeaderIsTold)
{
    const FileSizeLimit limit(10);
    const Warnings warnings;
    expectNoRecording();
    EXPECT_EQ(problem, RecordingProblem::fileNotWritten);
    EXPECT_TRUE(warnings.all().startsWith(u"A recording could not be begun: "_s));
}

TEST_F(PulseAudioRecorderFailureTest, ARecordingThatIsStoppedHasNoProblem)
{
    expectRecording(u"1.wav"_s);
    EXPECT_EQ(problemCount, 0);
}

} // namespace
} // namespace kestrova
