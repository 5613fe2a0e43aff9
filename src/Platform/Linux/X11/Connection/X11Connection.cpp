#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <algorithm>

namespace kestrova {

namespace {

// In units of four bytes. Far above any real window list or title; a hostile one is cut off here.
constexpr quint32 longestProperty = 64 * 1024;

const xcb_screen_t *screenAt(xcb_connection_t *connection, int number)
{
    if (xcb_connection_has_error(connection) != 0)
        return nullptr;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

QByteArrayView bytesOf(const xcb_get_property_reply_t &property)
{
    if (property.format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(&property)),
            xcb_get_property_value_length(&property)};
}

} // namespace

X11Connection::X11Connection(const QByteArray &displayName)
{
    m_connection =
        xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), &m_screenNumber);
    m_screen = screenAt(m_connection, m_screenNumber);
}

X11Connection::~X11Connection()
{
    xcb_disconnect(m_connection);
}

bool X11Connection::isOpen() const
{
    return xcb_connection_has_error(m_connection) == 0;
}

xcb_window_t X11Connection::root() const
{
    return m_screen ? m_screen->root : xcb_window_t{XCB_WINDOW_NONE};
}

bool X11Connection::hasExtension(xcb_extension_t *extension) const
{
    const xcb_query_extension_reply_t *const data = xcb_get_extension_data(m_connection, extension);
    return data && data->present;
}

xcb_atom_t X11Connection::atom(const QByteArray &name)
{
    const std::lock_guard lock(m_mutex);
    if (const auto known = m_atoms.find(name); known != m_atoms.end())
        return known->second;
    const auto cookie = xcb_intern_atom(m_connection, /*only_if_exists=*/0,
                                        static_cast<quint16>(name.size()), name.constData());
    const XcbPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return m_atoms.emplace(name, reply->atom).first->second;
}

XcbPointer<xcb_get_property_reply_t> X11Connection::property(xcb_window_t window,
                                                             const QByteArray &name)
{
    const auto cookie = xcb_get_property(m_connection, /*_delete=*/0, window, atom(name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
    return XcbPointer<xcb_get_property_reply_t>(
        xcb_get_property_reply(m_connection, cookie, nullptr));
}

QList<quint32> X11Connection::values(xcb_window_t window, const QByteArray &name)
{
    const auto reply = property(window, name);
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return QList<quint32>(first, first + reply->value_len);
}

quint32 X11Connection::value(xcb_window_t window, const QByteArray &name)
{
    return values(window, name).value(0, 0);
}

QByteArray X11Connection::bytes(xcb_window_t window, const QByteArray &name)
{
    const auto reply = property(window, name);
    return reply ? bytesOf(*reply).toByteArray() : QByteArray();
}

QString X11Connection::text(xcb_window_t window, const QByteArray &name)
{
    const auto reply = property(window, name);
    if (!reply)
        return {};
    return reply->type == atom("UTF8_STRING") ? QString::fromUtf8(bytesOf(*reply))
                                              : QString::fromLatin1(bytesOf(*reply));
}

void X11Connection::sendToRoot(xcb_window_t window, const QByteArray &messageType,
                               const std::array<quint32, 5> &data)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(messageType);
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(m_connection, /*propagate=*/0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
}

} // namespace kestrova
