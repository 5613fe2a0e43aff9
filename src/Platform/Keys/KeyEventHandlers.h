#pragma once

#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Observation/Observers.h"

namespace kestrova {

/// The handlers of one kind of monitor. A handler lasts as long as the monitor that add() returns
/// for it, which may outlive this list. Main thread.
class KeyEventHandlers
{
public:
    using Handler = KeyEventMonitoring::LocalHandler;

    std::unique_ptr<KeyEventMonitoring::Monitor> add(KeyEvent::Types types, Handler handler);
    /// Adds a handler that never keeps an event from the others.
    std::unique_ptr<KeyEventMonitoring::Monitor>
    addObserver(KeyEvent::Types types, KeyEventMonitoring::GlobalHandler handler);
    int count() const { return int(m_handlers.count()); }
    /// Calls the handlers of the event's type, oldest first, until one returns true; returns
    /// whether one did. A handler may end any monitor, its own too, and add others, which do not
    /// get this event.
    bool call(const KeyEvent &event) const;

private:
    Observers<Handler> m_handlers;
};

} // namespace kestrova
