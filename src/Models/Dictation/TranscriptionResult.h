#pragma once

#include <QString>

namespace kestrova {

/// What the transcriber returns for one recording.
struct TranscriptionResult
{
    QString text;                   ///< trimmed, never empty
    qint64 elapsedMilliseconds = 0; ///< wall-clock time of the transcription, truncated
};

} // namespace kestrova
