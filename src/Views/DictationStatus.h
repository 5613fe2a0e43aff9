#pragma once

#include "Models/Dictation/DictationState.h"
#include "Views/Primitives/Controls/PillStatus.h"

namespace kestrova {

/// How the state of the dictation is told in a status pill, the same in every window.
PillStatus dictationStatus(const DictationState &state);

} // namespace kestrova
