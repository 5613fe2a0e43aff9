#include "Platform/Linux/X11/Clipboard/IncrementalTransfers.h"

#include <algorithm>

namespace kestrova {

namespace {

// What one property carries at most: the server copies it whole, and several requestors may
// each have one waiting. Toolkits use a quarter of a megabyte too.
constexpr uint32_t largestPiece = 256 * 1024;
// A ChangeProperty request's own fields, with room to spare.
constexpr uint32_t requestOverhead = 100;

// Pieces are asked for by deleting the property; a requestor that vanishes is destroyed.
constexpr uint32_t requestorEvents =
    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
constexpr uint32_t noEvents = XCB_EVENT_MASK_NO_EVENT;

uint32_t pieceSizeOf(xcb_connection_t *connection)
{
    const uint64_t longest = uint64_t(xcb_get_maximum_request_length(connection)) * 4;
    return uint32_t(std::min<uint64_t>(longest - requestOverhead, largestPiece));
}

} // namespace

IncrementalTransfers::IncrementalTransfers(xcb_connection_t *connection, xcb_atom_t incr)
    : m_connection(connection), m_incr(incr), m_pieceSize(pieceSizeOf(connection))
{
}

void IncrementalTransfers::start(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                                 const QByteArray &bytes)
{
    std::erase_if(m_transfers, [&](const IncrementalTransfer &transfer) {
        return transfer.requestor() == requestor && transfer.property() == property;
    });
    xcb_change_window_attributes(m_connection, requestor, XCB_CW_EVENT_MASK, &requestorEvents);
    m_transfers.emplace_back(m_connection, requestor, property, type, bytes, m_incr, m_pieceSize);
}

void IncrementalTransfers::handle(const xcb_generic_event_t &event)
{
    switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY:
        propertyDeleted(reinterpret_cast<const xcb_property_notify_event_t &>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        dropAllTo(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
        break;
    case 0: // an error: the requestor vanished before we wrote to it
        dropAllTo(reinterpret_cast<const xcb_value_error_t &>(event).bad_value);
        break;
    default:
        break;
    }
}

void IncrementalTransfers::propertyDeleted(const xcb_property_notify_event_t &event)
{
    if (event.state != XCB_PROPERTY_DELETE)
        return;
    const auto transfer = std::find_if(
        m_transfers.begin(), m_transfers.end(), [&](const IncrementalTransfer &candidate) {
            return candidate.requestor() == event.window && candidate.property() == event.atom;
        });
    if (transfer == m_transfers.end())
        return;
    transfer->sendNext();
    if (transfer->isFinished()) {
        m_transfers.erase(transfer);
        unwatch(event.window);
    }
}

void IncrementalTransfers::dropAllTo(xcb_window_t requestor)
{
    std::erase_if(m_transfers, [&](const IncrementalTransfer &transfer) {
        return transfer.requestor() == requestor;
    });
}

void IncrementalTransfers::unwatch(xcb_window_t requestor)
{
    const bool isStillNeeded =
        std::any_of(m_transfers.begin(), m_transfers.end(), [&](const IncrementalTransfer &other) {
            return other.requestor() == requestor;
        });
    if (!isStillNeeded)
        xcb_change_window_attributes(m_connection, requestor, XCB_CW_EVENT_MASK, &noEvents);
}

IncrementalTransfers::Clock::time_point IncrementalTransfers::firstDeadline() const
{
    auto first = Clock::time_point::max();
    for (const IncrementalTransfer &transfer : m_transfers)
        first = std::min(first, transfer.deadline());
    return first;
}

void IncrementalTransfers::giveUpStalled()
{
    const auto isStalled = [now = Clock::now()](const IncrementalTransfer &transfer) {
        return transfer.deadline() <= now;
    };
    for (auto stalled = std::find_if(m_transfers.begin(), m_transfers.end(), isStalled);
         stalled != m_transfers.end();
         stalled = std::find_if(m_transfers.begin(), m_transfers.end(), isStalled)) {
        const xcb_window_t requestor = stalled->requestor();
        m_transfers.erase(stalled);
        unwatch(requestor);
    }
}

} // namespace kestrova
