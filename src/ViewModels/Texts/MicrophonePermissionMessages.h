#pragma once

#include "Models/PermissionSnapshot.h"
#include "Platform/Platform.h"

#include <QString>

#include <optional>

namespace kestrova {

/// What the user reads, and can do, after a request for the microphone that ended in this state.
QString microphonePermissionRecoveryMessage(MicrophoneAuthorizationState status,
                                            const std::optional<QString> &bundleIdentifier);

/// The same, where the system's own advice comes first (SystemAccess::microphoneAdvice()). Main
/// thread.
QString microphoneRecoveryMessage(const Platform &platform, MicrophoneAuthorizationState status);

/// What the settings say about a microphone that is not granted.
struct MicrophoneAdvice
{
    QString message;
    QString hint; ///< empty where the message says it all
};
/// Main thread.
MicrophoneAdvice microphoneAdvice(const Platform &platform, MicrophoneAuthorizationState status);

/// What the state means, in one sentence.
QString microphonePermissionStatusMessage(MicrophoneAuthorizationState status);
/// What helps when the system has forgotten the program.
QString microphonePermissionHint(const std::optional<QString> &bundleIdentifier);

} // namespace kestrova
