#include "Platform/Linux/Audio/PulseAudioInput.h"

#include "support/VirtualSound.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using Condition = MicrophoneCondition;

/// What the program is told of the microphone of a real sound server, without a recording.
class PulseAudioMicrophoneWatchTest : public testing::Test
{
protected:
    PulseAudioMicrophoneWatchTest()
    {
        condition = input.listen({.conditionChanged = [this](Condition told) { condition = told; },
                                  .recordingFailed = {}});
    }
    ~PulseAudioMicrophoneWatchTest() override { input.listen({}); }

    bool becomes(Condition expected)
    {
        return waitUntil([&] { return condition == expected; });
    }

    std::atomic<Condition> condition{};
    PulseAudioInput input;
};

TEST_F(PulseAudioMicrophoneWatchTest, MicrophonesThatGoAndComeAreTold)
{
    EXPECT_TRUE(becomes(Condition::available));
    VirtualSound::pactl({u"unload-module"_s, u"module-remap-source"_s});
    EXPECT_TRUE(becomes(Condition::monitorOnly));
    VirtualSound::pactl({u"unload-module"_s, u"module-null-sink"_s});
    EXPECT_TRUE(becomes(Condition::noDevice));
    VirtualSound::addExactMicrophone();
    EXPECT_TRUE(becomes(Condition::available));
}

TEST_F(PulseAudioMicrophoneWatchTest, AMutedMicrophoneIsTold)
{
    VirtualSound::addExactMicrophone();
    const QString name = QString::fromUtf8(VirtualSound::exactMicrophone);
    EXPECT_TRUE(becomes(Condition::available));
    VirtualSound::pactl({u"set-source-mute"_s, name, u"1"_s});
    EXPECT_TRUE(becomes(Condition::muted));
    VirtualSound::pactl({u"set-source-mute"_s, name, u"0"_s});
    EXPECT_TRUE(becomes(Condition::available));
    VirtualSound::pactl({u"set-source-volume"_s, name, u"0"_s});
    EXPECT_TRUE(becomes(Condition::muted));
    VirtualSound::pactl({u"set-source-volume"_s, name, u"100%"_s});
    EXPECT_TRUE(becomes(Condition::available));
    VirtualSound::pactl({u"set-default-source"_s, u"kestrova_microphone"_s});
    VirtualSound::pactl({u"set-source-mute"_s, name, u"1"_s});
    VirtualSound::pactl({u"set-default-source"_s, name});
    EXPECT_TRUE(becomes(Condition::muted)) << "another default is another microphone";
}

TEST_F(PulseAudioMicrophoneWatchTest, AServerThatGoesAndComesIsTold)
{
    EXPECT_TRUE(becomes(Condition::available));
    VirtualSound::server(u"stop"_s);
    EXPECT_TRUE(becomes(Condition::noServer));
    VirtualSound::server(u"start"_s);
    input.reconnect();
    EXPECT_TRUE(becomes(Condition::available));
}

TEST_F(PulseAudioMicrophoneWatchTest, AListenerHearsTheConditionAtOnce)
{
    EXPECT_TRUE(becomes(Condition::available));
    EXPECT_EQ(input.listen({}), Condition::available);
}

} // namespace
} // namespace kestrova
