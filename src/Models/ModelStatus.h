#pragma once

#include <QString>

namespace kestrova {

/// Presence of the transcription model on disk.
struct ModelStatus
{
    bool isReady = false;   ///< a file stands at modelPath
    QString modelPath;      ///< absolute path of the model file
    QString expectedSHA256; ///< configured hexadecimal digest; empty when none is configured

    bool operator==(const ModelStatus &) const = default;
};

} // namespace kestrova
