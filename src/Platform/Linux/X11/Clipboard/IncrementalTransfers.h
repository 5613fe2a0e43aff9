#pragma once

#include "Platform/Linux/X11/Clipboard/IncrementalTransfer.h"

#include <vector>

namespace kestrova {

/// The large values that are under way from one connection. Confined to one thread.
class IncrementalTransfers
{
public:
    using Clock = IncrementalTransfer::Clock;

    IncrementalTransfers(xcb_connection_t *connection, xcb_atom_t incr);

    /// Starts sending bytes of a type into the requestor's property, in place of what was under
    /// way into the same property.
    void start(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
               const QByteArray &bytes);

    /// To be called for every PropertyNotify, DestroyNotify and error of the connection.
    void handle(const xcb_generic_event_t &event);

    /// When the first of them has to be given up; time_point::max() when none is under way.
    Clock::time_point firstDeadline() const;
    void giveUpStalled();

    /// A longer value than this, in bytes, has to be sent in pieces.
    uint32_t pieceSize() const { return m_pieceSize; }

private:
    void propertyDeleted(const xcb_property_notify_event_t &event);
    void dropAllTo(xcb_window_t requestor);
    void unwatch(xcb_window_t requestor);

    xcb_connection_t *m_connection;
    xcb_atom_t m_incr;
    uint32_t m_pieceSize;
    std::vector<IncrementalTransfer> m_transfers;
};

} // namespace kestrova
