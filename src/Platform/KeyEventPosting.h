#pragma once

namespace kestrova {

/// Sends synthetic keystrokes to the application that has the keyboard.
class KeyEventPosting
{
public:
    virtual ~KeyEventPosting() = default;

    /// Sends the keystroke by which the front application pastes (Command+V in its own terms).
    /// Called on a worker; may wait a moment for modifier keys that the user still holds.
    /// Returns false when the system offers no way to send keystrokes. Whether the application
    /// then really pasted is not known.
    virtual bool postCommandV() = 0;
};

} // namespace kestrova
