#pragma once

#include "Models/Json/RawValue.h"

namespace kestrova {

/// What is known of a text once the paste keystroke was sent.
enum class DeliveryOutcome {
    requested,       ///< the application in front asked for the text
    unknown,         ///< somebody asked, and it cannot be told whether it was the application
    leftOnClipboard, ///< nobody asked in time
    replaced,        ///< nobody asked before another program replaced the clipboard's contents
};

template <>
struct RawValues<DeliveryOutcome>
{
    static constexpr std::array table{
        std::pair{DeliveryOutcome::requested, "requested"},
        std::pair{DeliveryOutcome::unknown, "unknown"},
        std::pair{DeliveryOutcome::leftOnClipboard, "leftOnClipboard"},
        std::pair{DeliveryOutcome::replaced, "replaced"},
    };
};

/// How the insertion of a text ended.
struct Delivery
{
    DeliveryOutcome outcome = DeliveryOutcome::unknown;
    quint64 number = 0; ///< counts the insertions of the running program, from 1

    bool operator==(const Delivery &) const = default;
};

/// A text of which it is not known that it arrived.
struct UnconfirmedTranscript
{
    quint64 number = 0; ///< of its delivery
    QString text;

    bool operator==(const UnconfirmedTranscript &) const = default;
};

} // namespace kestrova
