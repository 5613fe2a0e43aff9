#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <chrono>

namespace kestrova {

/// One large value on its way to one requestor, piece by piece (ICCCM 2.7.2): the requestor
/// deletes the property when it has taken a piece, and an empty piece ends the transfer.
/// Confined to the thread of its connection.
class IncrementalTransfer
{
public:
    using Clock = std::chrono::steady_clock;

    /// A requestor that took nothing for so long is given up, so that it cannot hold a large
    /// text in memory for ever.
    static constexpr std::chrono::seconds stallLimit{30};

    /// Announces the transfer in the property. The connection already selects the requestor's
    /// PropertyNotify events.
    IncrementalTransfer(xcb_connection_t *connection, xcb_window_t requestor, xcb_atom_t property,
                        xcb_atom_t type, const QByteArray &bytes, xcb_atom_t incr,
                        uint32_t pieceSize);

    xcb_window_t requestor() const { return m_requestor; }
    xcb_atom_t property() const { return m_property; }
    Clock::time_point deadline() const { return m_deadline; }
    bool isFinished() const { return m_isFinished; }

    /// The property was deleted: writes the next piece.
    void sendNext();

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_requestor;
    xcb_atom_t m_property;
    xcb_atom_t m_type;
    QByteArray m_bytes;
    uint32_t m_pieceSize;
    qsizetype m_sent = 0;
    bool m_isFinished = false;
    Clock::time_point m_deadline;
};

} // namespace kestrova
