#pragma once

#include "Models/Dictation/DictationState.h"
#include "Views/Primitives/Theme/Tones.h"

namespace kestrova {

/// How the state of the dictation is told in a status pill, the same in every window.
struct DictationStatus
{
    QString text;
    StatusPillTone::Value tone;
    QString icon; ///< name of a symbol

    static DictationStatus of(const DictationState &state);
};

} // namespace kestrova
