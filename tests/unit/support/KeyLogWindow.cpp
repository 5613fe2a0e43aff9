#include "support/KeyLogWindow.h"

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <stdexcept>
#include <string_view>

namespace kestrova {

KeyLogWindow::KeyLogWindow(const QByteArray &windowClass, const QByteArray &displayName)
    : m_connection(xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), nullptr)),
      m_window(xcb_generate_id(m_connection))
{
    if (xcb_connection_has_error(m_connection))
        throw std::runtime_error("no X server");
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    // Override-redirect: no window manager comes between.
    const uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                      XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const QByteArray classProperty = "instance" + QByteArray(1, '\0') + windowClass;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, uint32_t(classProperty.size()),
                        classProperty.constData());
    show();
    takeKeyboard();
    becomeActive();
}

KeyLogWindow::~KeyLogWindow()
{
    xcb_disconnect(m_connection);
}

void KeyLogWindow::show()
{
    xcb_map_window(m_connection, m_window);
    waitFor(XCB_EXPOSE);
}

void KeyLogWindow::takeKeyboard()
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
    waitFor(XCB_FOCUS_IN);
}

void KeyLogWindow::waitFor(int eventType)
{
    int type = 0;
    while (type != eventType) {
        xcb_flush(m_connection);
        const XcbPointer<xcb_generic_event_t> event(xcb_wait_for_event(m_connection));
        if (!event)
            throw std::runtime_error("the X server died");
        type = event->response_type & 0x7f;
    }
}

void KeyLogWindow::becomeActive()
{
    constexpr std::string_view name = "_NET_ACTIVE_WINDOW";
    const XcbPointer<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, name.size(), name.data()), nullptr));
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_root, atom->atom, XCB_ATOM_WINDOW,
                        32, 1, &m_window);
    modifiers(); // a round trip
}

xcb_window_t KeyLogWindow::focusWindowInside()
{
    const xcb_window_t inner = xcb_generate_id(m_connection);
    const uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, inner, m_window, 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_map_window(m_connection, inner);
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, inner, XCB_CURRENT_TIME);
    modifiers(); // a round trip
    return inner;
}

bool KeyLogWindow::grabKeyboard()
{
    const XcbPointer<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        m_connection,
        xcb_grab_keyboard(m_connection, /*owner_events=*/0, m_window, XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void KeyLogWindow::ungrabKeyboard()
{
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    modifiers(); // a round trip
}

uint16_t KeyLogWindow::modifiers()
{
    const XcbPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, m_window), nullptr));
    return reply ? reply->mask : uint16_t(0);
}

std::vector<KeyLogWindow::Key> KeyLogWindow::keys()
{
    modifiers(); // a round trip: what the server sent before the answer is queued by then
    std::vector<Key> keys;
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_queued_event(m_connection)}) {
        const int type = event->response_type & 0x7f;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            continue;
        const auto &key = *reinterpret_cast<const xcb_key_press_event_t *>(event.get());
        keys.push_back({type == XCB_KEY_PRESS, key.detail, key.state});
    }
    return keys;
}

} // namespace kestrova
