#pragma once

#include "Models/Json/RawValue.h"

namespace kestrova {

/// Where the dictation pipeline stands, as shown to the user.
struct DictationState
{
    enum class Kind { idle, recording, processing, error };

    Kind kind = Kind::idle;
    QString errorMessage; ///< empty unless kind is error

    static DictationState idle() { return {Kind::idle, {}}; }
    static DictationState recording() { return {Kind::recording, {}}; }
    static DictationState processing() { return {Kind::processing, {}}; }
    static DictationState error(const QString &message) { return {Kind::error, message}; }

    /// As the user reads it; an error's message is not part of it.
    QString displayText() const;

    bool operator==(const DictationState &) const = default;
};

template <>
struct RawValues<DictationState::Kind>
{
    static constexpr std::array table{
        std::pair{DictationState::Kind::idle, "idle"},
        std::pair{DictationState::Kind::recording, "recording"},
        std::pair{DictationState::Kind::processing, "processing"},
        std::pair{DictationState::Kind::error, "error"},
    };
};

} // namespace kestrova
