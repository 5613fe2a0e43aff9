#pragma once

#include "Models/PermissionSnapshot.h"

namespace kestrova {

/// What the user reads, and can do, after a request for the microphone that ended in this state.
/// The system's own advice comes first (SystemAccess::microphoneAdvice()).
QString microphonePermissionRecoveryMessage(MicrophoneAuthorizationState status,
                                            const QString &bundleIdentifier);

} // namespace kestrova
