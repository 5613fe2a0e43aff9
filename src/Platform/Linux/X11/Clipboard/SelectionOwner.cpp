#include "Platform/Linux/X11/Clipboard/SelectionOwner.h"

#include "Platform/Linux/X11/Connection/X11ClientProcess.h"

#include <algorithm>
#include <vector>

namespace kestrova {

namespace {

// The most pairs of one MULTIPLE request that are read, in 32-bit units.
constexpr uint32_t longestMultiple = 1024;

// A limit for windows that only ask what there was and go away.
constexpr size_t mostCatchingUp = 64;

// Server times and sequence numbers wrap around.
bool isBefore(uint32_t first, uint32_t second)
{
    return int32_t(first - second) < 0;
}

} // namespace

SelectionOwner::SelectionOwner(X11Connection &connection, xcb_window_t window,
                               const SelectionAtoms &atoms)
    : m_x11(connection), m_connection(connection.xcb()), m_window(window), m_atoms(atoms),
      m_transfers(m_connection, atoms.incr), m_owned{Owned{.selection = atoms.clipboard},
                                                     Owned{.selection = XCB_ATOM_PRIMARY}}
{
}

bool SelectionOwner::own(const SelectionText &text, std::shared_ptr<PasteboardOffer> offer,
                         xcb_timestamp_t time)
{
    const auto held = std::make_shared<const Held>(Held{text, std::move(offer), time});
    std::array<xcb_get_selection_owner_cookie_t, 2> cookies{};
    m_since = time;
    for (size_t i = 0; i < m_owned.size(); ++i) {
        Owned &owned = m_owned[i];
        owned.takenBy =
            xcb_set_selection_owner(m_connection, m_window, owned.selection, time).sequence;
        cookies[i] = xcb_get_selection_owner(m_connection, owned.selection);
    }
    bool ownsAll = true;
    for (size_t i = 0; i < m_owned.size(); ++i) {
        const XcbPointer<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(m_connection, cookies[i], nullptr));
        const bool isOwner = reply && reply->owner == m_window;
        std::deque<std::shared_ptr<const Held>> &texts = m_owned[i].held;
        if (isOwner)
            texts.push_back(held);
        else
            texts.clear();
        if (texts.size() > mostEarlierTexts + 1)
            texts.pop_front();
        ownsAll = ownsAll && isOwner;
    }
    return ownsAll;
}

bool SelectionOwner::owns(xcb_atom_t selection) const
{
    return std::any_of(m_owned.begin(), m_owned.end(), [&](const Owned &owned) {
        return owned.selection == selection && !owned.held.empty();
    });
}

void SelectionOwner::handle(const xcb_generic_event_t &event)
{
    switch (event.response_type & 0x7f) {
    case XCB_SELECTION_CLEAR:
        selectionCleared(reinterpret_cast<const xcb_selection_clear_event_t &>(event).selection,
                         event.full_sequence);
        break;
    case XCB_SELECTION_REQUEST:
        selectionRequested(reinterpret_cast<const xcb_selection_request_event_t &>(event));
        break;
    default:
        m_transfers.handle(event);
        break;
    }
}

void SelectionOwner::selectionCleared(xcb_atom_t selection, uint32_t sequence)
{
    for (Owned &owned : m_owned) {
        // An event from before our latest takeover is about an earlier ownership.
        if (owned.selection != selection || isBefore(sequence, owned.takenBy))
            continue;
        if (selection == m_atoms.clipboard && !owned.held.empty())
            owned.held.back()->offer->setReplaced();
        owned.held.clear();
        m_catchingUp.clear();
    }
}

std::shared_ptr<const SelectionOwner::Held>
SelectionOwner::heldFor(const xcb_selection_request_event_t &event)
{
    const auto owned = std::find_if(m_owned.begin(), m_owned.end(), [&](const Owned &candidate) {
        return candidate.selection == event.selection;
    });
    if (owned == m_owned.end())
        return nullptr;
    // Whoever asks with a time before them all means what somebody else had on the selection.
    const auto held =
        std::find_if(owned->held.rbegin(), owned->held.rend(), [&](const auto &candidate) {
            return event.time == XCB_CURRENT_TIME || !isBefore(event.time, candidate->since);
        });
    if (held == owned->held.rend())
        return nullptr;
    if (*held != owned->held.back() && m_catchingUp.size() < mostCatchingUp)
        m_catchingUp[event.requestor] = *held;
    const auto asked = m_catchingUp.find(event.requestor);
    return asked == m_catchingUp.end() ? *held : asked->second;
}

void SelectionOwner::selectionRequested(const xcb_selection_request_event_t &event)
{
    // Obsolete clients leave the property open (ICCCM 2.2).
    const xcb_atom_t property = event.property == XCB_ATOM_NONE ? event.target : event.property;
    const std::shared_ptr<const Held> held = heldFor(event);
    bool isConverted = false;
    if (held && event.target == m_atoms.multiple)
        isConverted =
            event.property != XCB_ATOM_NONE && convertMultiple(*held, event.requestor, property);
    else if (held)
        isConverted = convert(*held, event.requestor, event.target, property);

    // xcb sends a whole event, which is longer than this one.
    union {
        xcb_selection_notify_event_t notify;
        char wholeEvent[32];
    } answer{};
    answer.notify.response_type = XCB_SELECTION_NOTIFY;
    answer.notify.time = event.time;
    answer.notify.requestor = event.requestor;
    answer.notify.selection = event.selection;
    answer.notify.target = event.target;
    answer.notify.property = isConverted ? property : xcb_atom_t(XCB_ATOM_NONE);
    xcb_send_event(m_connection, 0, event.requestor, XCB_EVENT_MASK_NO_EVENT, answer.wholeEvent);
}

bool SelectionOwner::convert(const Held &held, xcb_window_t requestor, xcb_atom_t target,
                             xcb_atom_t property)
{
    if (target == m_atoms.targets) {
        writeTargets(held.text, requestor, property);
        return true;
    }
    if (target == m_atoms.timestamp) {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, requestor, property,
                            XCB_ATOM_INTEGER, 32, 1, &held.since);
        return true;
    }
    if (target == m_atoms.saveTargets) { // asks for an effect, not for a value
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, requestor, property, m_atoms.null,
                            32, 0, nullptr);
        return true;
    }
    if (!convertText(held.text, requestor, target, property))
        return false;
    m_catchingUp.erase(requestor);
    held.offer->addReader(requestorProcess(m_x11, requestor));
    return true;
}

bool SelectionOwner::convertText(const SelectionText &text, xcb_window_t requestor,
                                 xcb_atom_t target, xcb_atom_t property)
{
    if (target == XCB_ATOM_STRING && text.isLatin1()) {
        send(requestor, property, XCB_ATOM_STRING, text.latin1());
        return true;
    }
    if (target == m_atoms.text) { // the type is the owner's choice
        send(requestor, property, m_atoms.utf8String, text.utf8());
        return true;
    }
    if (target == m_atoms.utf8String || target == m_atoms.plainText ||
        target == m_atoms.plainTextUtf8) {
        send(requestor, property, target, text.utf8());
        return true;
    }
    return false;
}

void SelectionOwner::writeTargets(const SelectionText &text, xcb_window_t requestor,
                                  xcb_atom_t property)
{
    std::vector<xcb_atom_t> targets{m_atoms.targets,     m_atoms.timestamp,  m_atoms.multiple,
                                    m_atoms.saveTargets, m_atoms.utf8String, m_atoms.plainTextUtf8,
                                    m_atoms.plainText,   m_atoms.text};
    if (text.isLatin1())
        targets.push_back(XCB_ATOM_STRING);
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32,
                        uint32_t(targets.size()), targets.data());
}

bool SelectionOwner::convertMultiple(const Held &held, xcb_window_t requestor, xcb_atom_t property)
{
    const XcbPointer<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection,
                               xcb_get_property(m_connection, 0, requestor, property,
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, longestMultiple),
                               nullptr));
    if (!reply || reply->format != 32)
        return false;
    const auto *values = static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get()));
    std::vector<xcb_atom_t> pairs(values, values + reply->value_len);
    for (size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const xcb_atom_t target = pairs[i];
        xcb_atom_t &destination = pairs[i + 1];
        if (destination != XCB_ATOM_NONE && target != m_atoms.multiple &&
            convert(held, requestor, target, destination))
            continue;
        destination = XCB_ATOM_NONE;
    }
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, requestor, property, m_atoms.atomPair,
                        32, uint32_t(pairs.size()), pairs.data());
    return true;
}

void SelectionOwner::send(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                          const QByteArray &bytes)
{
    if (bytes.size() > m_transfers.pieceSize()) {
        m_transfers.start(requestor, property, type, bytes);
        return;
    }
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
                        uint32_t(bytes.size()), bytes.constData());
}

} // namespace kestrova
