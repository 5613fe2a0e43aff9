#pragma once

#include "Platform/Linux/X11/IncrementalTransfers.h"
#include "Platform/Linux/X11/SelectionAtoms.h"
#include "Platform/Linux/X11/SelectionText.h"

#include <array>
#include <memory>

namespace kestrova {

/// The owner's side of the selection protocol (ICCCM 2) for one text on CLIPBOARD and PRIMARY:
/// takes both over, answers requests, sends large texts in pieces, and forgets the text of a
/// selection that somebody else takes. Confined to one thread, which gives it every event of
/// the connection.
class SelectionOwner
{
public:
    /// The window belongs to the caller and outlives this.
    SelectionOwner(xcb_connection_t *connection, xcb_window_t window, const SelectionAtoms &atoms);

    /// Takes both selections over with the present server time; false when the server gave one
    /// of them to somebody else. Waits for the server's answer.
    bool own(const SelectionText &text, xcb_timestamp_t time);
    bool owns(xcb_atom_t selection) const;
    /// The server time at which the selections were taken over.
    xcb_timestamp_t ownedSince() const { return m_since; }

    void handle(const xcb_generic_event_t &event);

    /// Its large texts under way, whose deadlines are the caller's business.
    IncrementalTransfers &transfers() { return m_transfers; }

private:
    struct Owned
    {
        xcb_atom_t selection;
        std::shared_ptr<const SelectionText> text = {}; ///< none: not ours
        uint32_t takenBy = 0; ///< sequence number of the request that took it over
    };

    void selectionCleared(xcb_atom_t selection, uint32_t sequence);
    void selectionRequested(const xcb_selection_request_event_t &event);

    const SelectionText *textFor(const xcb_selection_request_event_t &event) const;
    bool convert(const SelectionText &text, xcb_window_t requestor, xcb_atom_t target,
                 xcb_atom_t property);
    bool convertMultiple(const SelectionText &text, xcb_window_t requestor, xcb_atom_t property);
    bool convertText(const SelectionText &text, xcb_window_t requestor, xcb_atom_t target,
                     xcb_atom_t property);
    void writeTargets(const SelectionText &text, xcb_window_t requestor, xcb_atom_t property);
    void send(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
              const QByteArray &bytes);

    xcb_connection_t *m_connection;
    xcb_window_t m_window;
    SelectionAtoms m_atoms;
    IncrementalTransfers m_transfers;
    std::array<Owned, 2> m_owned;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
};

} // namespace kestrova
