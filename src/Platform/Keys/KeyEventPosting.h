#pragma once

#include <QtGlobal>

namespace kestrova {

/// Sends synthetic keystrokes to the application that has the keyboard. Called on a worker; every
/// call returns promptly.
class KeyEventPosting
{
public:
    enum class Outcome {
        sent,        ///< whether the application then really pasted is not known
        notSent,     ///< the conditions did not hold; nothing has happened
        unavailable, ///< the system offers no way to send keystrokes
    };

    /// What must hold at the very moment of the keystroke.
    struct Conditions
    {
        /// The only window that may get it (RunningApplication::keyboardWindow); 0: any.
        quint64 window = 0;
        /// Modifier keys that are down are released first. Otherwise they prevent the keystroke,
        /// because they would make another one of it.
        bool releasesModifiers = false;
    };

    virtual ~KeyEventPosting() = default;

    /// Whether the user holds modifier keys down. False where that cannot be told.
    virtual bool areModifiersHeld() = 0;
    /// Whether a program takes all keys for itself, as an open menu, a window switcher or a screen
    /// locker does, whatever window has the keyboard. False where that cannot be told.
    virtual bool isKeyboardTaken() = 0;
    /// Sends the keystroke by which the front application pastes (Command+V in its own terms),
    /// unless the keyboard is taken.
    virtual Outcome postCommandV(const Conditions &conditions) = 0;
};

} // namespace kestrova
