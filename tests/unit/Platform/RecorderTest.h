#pragma once

#include "Platform/Linux/Audio/PulseAudioInput.h"
#include "support/RampPlayer.h"
#include "support/VirtualSound.h"
#include "support/WaitUntil.h"
#include "support/WavSamples.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace kestrova {

/// Recordings of a private sound server, whose microphone hears what RampPlayer plays.
class RecorderTest : public testing::Test
{
protected:
    RecorderTest() { VirtualSound::addExactMicrophone(); }

    std::unique_ptr<AudioRecorder> makeRecorder(const QString &name = QStringLiteral("1.wav"))
    {
        return input.makeRecorder(QUrl::fromLocalFile(folder.filePath(name)), {});
    }

    /// Until so much more is recorded.
    static bool record(const AudioRecorder &recorder, double seconds)
    {
        const double wanted = recorder.currentTime() + seconds;
        return waitUntil([&] { return recorder.currentTime() >= wanted; });
    }

    static std::vector<qint16> samples(const AudioRecorder &recorder)
    {
        const auto samples = completeWavSamples(recorder.url().toLocalFile());
        EXPECT_TRUE(samples) << "not a valid file";
        return samples.value_or(std::vector<qint16>());
    }

    /// The recording is one piece of the ramp, and as long as the recorder says.
    static void expectUnbrokenRamp(const AudioRecorder &recorder)
    {
        const std::vector<qint16> recorded = samples(recorder);
        ASSERT_FALSE(recorded.empty());
        EXPECT_EQ(recorder.currentTime(), static_cast<double>(recorded.size()) / 16000);
        std::vector<qint16> expected(recorded.size());
        qint64 number = RampPlayer::numberOf(recorded.front());
        for (qint16 &sample : expected)
            sample = RampPlayer::sampleOf(number++);
        const auto difference = std::mismatch(recorded.begin(), recorded.end(), expected.begin());
        EXPECT_TRUE(recorded == expected)
            << "differs from sample " << difference.first - recorded.begin() << " of "
            << recorded.size() << ": "
            << testing::PrintToString(std::vector<qint16>(
                   difference.first, std::min(difference.first + 8, recorded.end())))
            << " instead of " << *difference.second;
    }

    QTemporaryDir folder;
    PulseAudioInput input;
};

} // namespace kestrova
