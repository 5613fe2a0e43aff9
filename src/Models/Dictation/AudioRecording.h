#pragma once

#include <QUrl>

namespace kestrova {

/// One finished recording.
struct AudioRecording
{
    QUrl fileURL; ///< 16 kHz mono 16-bit PCM WAV
    double durationSeconds = 0;

    bool operator==(const AudioRecording &) const = default;
};

} // namespace kestrova
