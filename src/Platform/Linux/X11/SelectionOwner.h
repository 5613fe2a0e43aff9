#pragma once

#include "Platform/Linux/X11/IncrementalTransfer.h"
#include "Platform/Linux/X11/SelectionAtoms.h"
#include "Platform/Linux/X11/SelectionText.h"

#include <array>
#include <memory>
#include <vector>

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

    /// Whether a transfer is under way, and when the first of them would be given up.
    bool isTransferring() const { return !m_transfers.empty(); }
    IncrementalTransfer::Clock::time_point firstDeadline() const;
    void giveUpStalledTransfers();

private:
    struct Owned
    {
        xcb_atom_t selection;
        std::shared_ptr<const SelectionText> text; ///< none: not ours
    };
    struct Value;

    void selectionCleared(const xcb_selection_clear_event_t &event);
    void selectionRequested(const xcb_selection_request_event_t &event);
    void propertyDeleted(const xcb_property_notify_event_t &event);
    void dropTransfersTo(xcb_window_t requestor);
    void unwatch(xcb_window_t requestor);

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
    uint32_t m_pieceSize;
    std::array<Owned, 2> m_owned;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
    uint32_t m_takeoverSequence = 0;
    std::vector<IncrementalTransfer> m_transfers;
};

} // namespace kestrova
