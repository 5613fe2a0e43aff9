#pragma once

#include "Models/HotkeyShortcut.h"

#include <QList>

#include <functional>
#include <memory>

namespace kestrova {

/// A key that went down, in the numbers in which shortcuts are stored.
struct KeyDownEvent
{
    quint32 keyCode = 0;   ///< virtual key code by physical position, as in HotkeyShortcut
    quint32 modifiers = 0; ///< the HotkeyShortcut::Modifier bits that were held; no others
    bool isRepeat = false; ///< the key was down already and repeats

    bool operator==(const KeyDownEvent &) const = default;
};

/// Observes the keyboard. Used on the main thread, on which the handlers are called too. The keys
/// that KeyEventPosting sends and modifier keys pressed by themselves are not reported; keys that
/// have no virtual key code neither.
class KeyEventMonitoring
{
public:
    /// Ends the monitoring when it is destroyed, which may happen inside its own handler.
    class Monitor
    {
    public:
        virtual ~Monitor() = default;
    };

    using GlobalHandler = std::function<void(const KeyDownEvent &)>;
    /// Returns true to keep the event from the window that has the keyboard.
    using LocalHandler = std::function<bool(const KeyDownEvent &)>;

    virtual ~KeyEventMonitoring() = default;

    /// Key-downs, repeats included, while another program has the keyboard. They reach that program
    /// all the same. Null when the system does not let us observe them.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addGlobalMonitor(GlobalHandler handler) = 0;
    /// Key-downs, repeats included, for one of the program's own windows, before the window gets
    /// them. Null when the program can have no windows.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addLocalMonitor(LocalHandler handler) = 0;

    /// Keeps these shortcuts from all windows, for as long as the result lives; global monitors
    /// see them still, whichever window has the keyboard. Null where a program cannot do that, or
    /// need not, because shortcuts type nothing there.
    [[nodiscard]] virtual std::unique_ptr<Monitor>
    withhold(const QList<HotkeyShortcut> &shortcuts) = 0;
};

} // namespace kestrova
