#pragma once

#include "Models/Json/RawValue.h"

namespace kestrova {

enum class MicrophoneAuthorizationState { authorized, denied, restricted, notDetermined, unknown };

template <>
struct RawValues<MicrophoneAuthorizationState>
{
    static constexpr std::array table{
        std::pair{MicrophoneAuthorizationState::authorized, "authorized"},
        std::pair{MicrophoneAuthorizationState::denied, "denied"},
        std::pair{MicrophoneAuthorizationState::restricted, "restricted"},
        std::pair{MicrophoneAuthorizationState::notDetermined, "notDetermined"},
        std::pair{MicrophoneAuthorizationState::unknown, "unknown"},
    };
};

/// What the system allows the program to do, at one moment.
struct PermissionSnapshot
{
    bool microphoneAuthorized = false; ///< exactly when microphoneStatus is authorized
    MicrophoneAuthorizationState microphoneStatus = MicrophoneAuthorizationState::unknown;
    bool accessibilityAuthorized = false; ///< may send key events to other applications

    bool operator==(const PermissionSnapshot &) const = default;
};

} // namespace kestrova
