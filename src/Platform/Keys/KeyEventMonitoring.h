#pragma once

#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Observation/Observers.h"

#include <QFlags>
#include <QList>

#include <functional>
#include <memory>

namespace kestrova {

/// What a key did, in the numbers in which shortcuts are stored.
struct KeyEvent
{
    enum Type : quint8 {
        keyDown = 1,
        flagsChanged = 2, ///< a modifier or lock key went down or up; the rest says nothing
        /// The keys or their modifiers are others now, as after a change of the keyboard's options;
        /// global monitors only, and the rest says nothing.
        keyboardChanged = 4,
    };
    Q_DECLARE_FLAGS(Types, Type)

    quint32 keyCode = 0;   ///< virtual key code by physical position, as in HotkeyShortcut
    quint32 modifiers = 0; ///< the HotkeyShortcut::Modifier bits that were held; no others
    bool isRepeat = false; ///< the key was down already and repeats
    Type type = keyDown;
    /// Another program has reserved the key and got it, whatever window has the keyboard.
    bool isReserved = false;

    bool operator==(const KeyEvent &) const = default;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(KeyEvent::Types)

/// Observes the keyboard. Used on the main thread, on which the handlers are called too. Modifier
/// and lock keys are no key-downs. The keys that KeyEventPosting sends are not reported; key-downs
/// that have no virtual key code neither.
class KeyEventMonitoring
{
public:
    /// Ends the monitoring when it is destroyed, which may happen inside its own handler.
    using Monitor = Observation;

    using GlobalHandler = std::function<void(const KeyEvent &)>;
    /// Returns true to keep the event from the window that has the keyboard, which it must not
    /// delete, except later.
    using LocalHandler = std::function<bool(const KeyEvent &)>;

    virtual ~KeyEventMonitoring() = default;

    /// Events of these types, repeats included, that no window of the program's own gets. They
    /// reach another program all the same. Null when the system does not let us observe them.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types types,
                                                                    GlobalHandler handler) = 0;
    /// Events of these types, repeats included, for one of the program's own windows, before the
    /// window gets them. Null when the program can have no windows.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types types,
                                                                   LocalHandler handler) = 0;

    /// Keeps these shortcuts from all windows, for as long as the result lives; global monitors
    /// see them still, whichever window has the keyboard. At most one result lives at a time. Null
    /// where a program cannot do that, or need not, because shortcuts type nothing there.
    [[nodiscard]] virtual std::unique_ptr<Monitor> grab(const QList<HotkeyShortcut> &shortcuts) = 0;

    /// Whether the keys of the present keyboard give the shortcut: they may lack a modifier.
    virtual bool canType(const HotkeyShortcut &shortcut) = 0;
};

} // namespace kestrova
