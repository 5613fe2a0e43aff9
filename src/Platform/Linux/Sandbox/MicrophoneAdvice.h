#pragma once

#include "Models/PermissionSnapshot.h"
#include "Platform/Linux/Sandbox/Sandbox.h"

namespace kestrova {

/// What the user of a sandboxed program can do about this state; none when there is nothing to do.
std::optional<QString> microphoneAdvice(const Sandbox &sandbox, MicrophoneAuthorizationState state);

} // namespace kestrova
