#pragma once

#include "Models/Dictation/TargetApplication.h"

namespace kestrova {

/// What is reported once a transcript has been inserted.
struct TranscriptInsertionPayload
{
    QString text;
    qint64 wordCount = 0;
    double audioDurationSeconds = 0;
    std::optional<TargetApplication> target; ///< none when no destination was known
    std::optional<qint64> slotIndex;         ///< hotbar slot 1 to 9; none for the main shortcut

    bool operator==(const TranscriptInsertionPayload &) const = default;
};

} // namespace kestrova
