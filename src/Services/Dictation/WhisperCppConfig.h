#pragma once

#include "Models/Dictation/WhisperDecodingProfile.h"

#include <QString>

#include <functional>

namespace kestrova {

/// What one transcription is run with; built afresh for each.
struct WhisperCppConfig
{
    /// The whisper.cpp revision that the program is known to work with. For information only.
    static QString knownCommit()
    {
        return QStringLiteral("9f70a352f9c9c4209f3e8f79f4f4f0f6b27f2b7d");
    }

    QString cliPath = {}; ///< as the user configured it: may be empty or padded with blanks
    QString pinnedCommit = knownCommit();
    QString language = {};
    WhisperDecodingProfile decodingProfile = WhisperDecodingProfile::balanced;
};

/// Reads the settings anew on each call; any thread.
using WhisperCppConfigProvider = std::function<WhisperCppConfig()>;

} // namespace kestrova
