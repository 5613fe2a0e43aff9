#pragma once

#include <chrono>

namespace kestrova {

/// Every wait of the text insertion, passed in so that tests need not sit through them.
struct Timings
{
    /// How long an application may take to come to the front after a normal activation.
    std::chrono::nanoseconds focusWait = std::chrono::seconds(2);
    /// The same after an activation by script.
    std::chrono::nanoseconds scriptFocusWait = std::chrono::seconds(1);
    /// How often the front application, or the keyboard, is looked at meanwhile.
    std::chrono::nanoseconds focusPollInterval = std::chrono::milliseconds(40);
    /// How long the user may keep modifier keys down before they are released for him.
    std::chrono::nanoseconds modifierWait = std::chrono::seconds(1);
    /// How long another program may then keep the keyboard for itself, as an open menu does.
    std::chrono::nanoseconds takenKeyboardWait = std::chrono::seconds(2);
    /// Between writing the pasteboard and sending the keystroke.
    std::chrono::nanoseconds pauseBeforePaste = std::chrono::milliseconds(140);
    /// How long the application may then take to ask for the text before the insertion ends without
    /// knowing. Usual are 1 to 12 ms.
    std::chrono::nanoseconds requestWait = std::chrono::milliseconds(500);
    /// How often that is looked at meanwhile.
    std::chrono::nanoseconds requestPollInterval = std::chrono::milliseconds(5);
};

} // namespace kestrova
