#pragma once

#include "Models/PermissionSnapshot.h"

#include <QString>

#include <optional>

namespace kestrova {

/// What the user reads, and can do, after a request for the microphone that ended in this state.
/// The system's own advice comes first (SystemAccess::microphoneAdvice()).
QString microphonePermissionRecoveryMessage(MicrophoneAuthorizationState status,
                                            const std::optional<QString> &bundleIdentifier);

/// What the state means, in one sentence.
QString microphonePermissionStatusMessage(MicrophoneAuthorizationState status);
/// What helps when the system has forgotten the program.
QString microphonePermissionHint(const std::optional<QString> &bundleIdentifier);

} // namespace kestrova
