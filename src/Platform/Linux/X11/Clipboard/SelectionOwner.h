#pragma once

#include "Platform/Linux/X11/Clipboard/IncrementalTransfers.h"
#include "Platform/Linux/X11/Clipboard/SelectionAtoms.h"
#include "Platform/Linux/X11/Clipboard/SelectionText.h"
#include "Platform/PasteboardOffer.h"

#include <array>
#include <deque>
#include <map>
#include <memory>

namespace kestrova {

/// The owner's side of the selection protocol (ICCCM 2) for one text on CLIPBOARD and PRIMARY:
/// takes both over, answers requests, sends large texts in pieces, and forgets the text of a
/// selection that somebody else takes. Who asks with the time of a key press, as most do, gets the
/// text that was there at that time: an application that hung while two texts were pasted into it
/// gets both. Confined to one thread, which gives it every event of the connection.
class SelectionOwner
{
public:
    /// How many texts before the present one can still be asked for.
    static constexpr size_t mostEarlierTexts = 8;

    /// The connection and its window belong to the caller and outlive this.
    SelectionOwner(X11Connection &connection, xcb_window_t window, const SelectionAtoms &atoms);

    /// Takes both selections over with the present server time; false when the server gave one
    /// of them to somebody else. Waits for the server's answer. The offer is told who asks for the
    /// text, and of the loss of CLIPBOARD.
    bool own(const SelectionText &text, std::shared_ptr<PasteboardOffer> offer,
             xcb_timestamp_t time);
    bool owns(xcb_atom_t selection) const;
    /// The server time at which the selections were taken over.
    xcb_timestamp_t ownedSince() const { return m_since; }

    void handle(const xcb_generic_event_t &event);

    /// Its large texts under way, whose deadlines are the caller's business.
    IncrementalTransfers &transfers() { return m_transfers; }

private:
    struct Held
    {
        SelectionText text;
        std::shared_ptr<PasteboardOffer> offer;
        xcb_timestamp_t since;
    };
    struct Owned
    {
        xcb_atom_t selection;
        std::deque<std::shared_ptr<const Held>> held = {}; ///< the present one last; none: not ours
        uint32_t takenBy = 0; ///< sequence number of the request that took it over
    };

    void selectionCleared(xcb_atom_t selection, uint32_t sequence);
    void selectionRequested(const xcb_selection_request_event_t &event);

    std::shared_ptr<const Held> heldFor(const xcb_selection_request_event_t &event);
    bool convert(const Held &held, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertMultiple(const Held &held, xcb_window_t requestor, xcb_atom_t property);
    bool convertText(const SelectionText &text, xcb_window_t requestor, xcb_atom_t target,
                     xcb_atom_t property);
    void writeTargets(const SelectionText &text, xcb_window_t requestor, xcb_atom_t property);
    void send(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
              const QByteArray &bytes);

    X11Connection &m_x11;
    xcb_connection_t *const m_connection;
    xcb_window_t m_window;
    SelectionAtoms m_atoms;
    IncrementalTransfers m_transfers;
    std::array<Owned, 2> m_owned;
    // Windows that asked with the time of an earlier text and have not got it yet: GTK asks first
    // what there is, and then with a later time for the text itself.
    std::map<xcb_window_t, std::shared_ptr<const Held>> m_catchingUp;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
};

} // namespace kestrova
