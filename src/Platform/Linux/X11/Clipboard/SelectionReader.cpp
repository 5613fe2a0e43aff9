#include "Platform/Linux/X11/Clipboard/SelectionReader.h"

#include "Platform/Linux/X11/Clipboard/SelectionWindow.h"
#include "Platform/Linux/X11/Connection/X11ServerTime.h"

#include <algorithm>

#include <poll.h>

namespace kestrova {

using namespace std::chrono_literals;

SelectionReader::SelectionReader(const QByteArray &displayName)
    : m_connection(displayName), m_atoms(m_connection),
      m_window(createSelectionWindow(m_connection))
{
}

std::optional<QString> SelectionReader::readClipboard()
{
    const xcb_timestamp_t time = serverTime(m_connection);
    m_end = Clock::now() + wholeLimit;
    if (const auto utf8 = readAs(m_atoms.utf8String, time))
        return QString::fromUtf8(*utf8);
    if (const auto latin1 = readAs(XCB_ATOM_STRING, time))
        return QString::fromLatin1(*latin1);
    return std::nullopt;
}

std::optional<QByteArray> SelectionReader::readAs(xcb_atom_t target, xcb_timestamp_t time)
{
    xcb_delete_property(m_connection.xcb(), m_window, m_atoms.ownProperty);
    xcb_convert_selection(m_connection.xcb(), m_window, m_atoms.clipboard, target,
                          m_atoms.ownProperty, time);
    bool isConverted = false;
    waitFor<xcb_selection_notify_event_t>(XCB_SELECTION_NOTIFY, [&](const auto &event) {
        isConverted = event.property != XCB_ATOM_NONE;
        return event.target == target;
    });
    if (!isConverted)
        return std::nullopt;
    const std::optional<Piece> whole = takeProperty();
    if (!whole)
        return std::nullopt;
    return whole->type == m_atoms.incr ? readPieces() : whole->bytes;
}

std::optional<QByteArray> SelectionReader::readPieces()
{
    QByteArray text;
    for (;;) {
        const bool isThere =
            waitFor<xcb_property_notify_event_t>(XCB_PROPERTY_NOTIFY, [&](const auto &event) {
                return event.atom == m_atoms.ownProperty && event.state == XCB_PROPERTY_NEW_VALUE;
            });
        const std::optional<Piece> piece = isThere ? takeProperty() : std::nullopt;
        if (!piece)
            return std::nullopt;
        if (piece->bytes.isEmpty())
            return text;
        text += piece->bytes;
    }
}

std::optional<SelectionReader::Piece> SelectionReader::takeProperty()
{
    const XcbPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection.xcb(),
        xcb_get_property(m_connection.xcb(), 1, m_window, m_atoms.ownProperty,
                         XCB_GET_PROPERTY_TYPE_ANY, 0, UINT32_MAX / 4),
        nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return std::nullopt;
    return Piece{reply->type,
                 QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                            xcb_get_property_value_length(reply.get()))};
}

template <typename Event, typename Condition>
bool SelectionReader::waitFor(uint8_t type, Condition isWanted)
{
    xcb_flush(m_connection.xcb());
    const auto deadline = std::min(m_end, Clock::now() + answerLimit);
    while (const auto event = nextEvent(deadline)) {
        if ((event->response_type & 0x7f) == type &&
            isWanted(*reinterpret_cast<const Event *>(event.get())))
            return true;
    }
    m_end = Clock::now(); // whoever does not answer once is not asked again
    return false;
}

XcbPointer<xcb_generic_event_t> SelectionReader::nextEvent(Clock::time_point deadline)
{
    for (;;) {
        if (auto *event = xcb_poll_for_event(m_connection.xcb()))
            return XcbPointer<xcb_generic_event_t>(event);
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || !m_connection.isOpen())
            return nullptr;
        pollfd socket{xcb_get_file_descriptor(m_connection.xcb()), POLLIN, 0};
        poll(&socket, 1, int(left));
    }
}

} // namespace kestrova
