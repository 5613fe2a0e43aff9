#pragma once

#include "ViewModels/AppState.h"

namespace kestrova {

/// What keeps the microphone from hearing the user, and what helps. Empty when nothing does, when
/// nothing is known and when the microphone is not granted, which is told otherwise.
QString microphoneHint(const AppState &state);

/// Why a recording is not all that was said.
QString recordingProblemText(RecordingProblem problem);

} // namespace kestrova
