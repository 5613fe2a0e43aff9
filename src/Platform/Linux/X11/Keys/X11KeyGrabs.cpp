#include "Platform/Linux/X11/Keys/X11KeyGrabs.h"

#include <sys/socket.h>

namespace kestrova {

namespace {

void waitForServer(X11Connection &connection)
{
    const XcbPointer<xcb_get_input_focus_reply_t> answer(xcb_get_input_focus_reply(
        connection.xcb(), xcb_get_input_focus(connection.xcb()), nullptr));
}

void endGrab(X11Connection &connection, xcb_timestamp_t time)
{
    xcb_ungrab_keyboard(connection.xcb(), time);
    xcb_flush(connection.xcb());
}

} // namespace

X11KeyGrabs::X11KeyGrabs(PostedKeys &postedKeys, const QByteArray &displayName)
    : m_postedKeys(postedKeys), m_connection(std::make_shared<X11Connection>(displayName))
{
    if (!m_connection->isOpen())
        return;
    m_thread = std::thread([this] { run(); });
    m_postedKeys.setPreparation([connection = m_connection] {
        endGrab(*connection, XCB_CURRENT_TIME);
        waitForServer(*connection);
    });
}

X11KeyGrabs::~X11KeyGrabs()
{
    if (!m_thread.joinable())
        return;
    m_postedKeys.setPreparation(nullptr);
    // Wakes the thread up, and the server ends the grabs of a connection that is closed.
    shutdown(xcb_get_file_descriptor(m_connection->xcb()), SHUT_RDWR);
    m_thread.join();
}

void X11KeyGrabs::set(std::set<X11KeyCombination> combinations)
{
    xcb_connection_t *const xcb = m_connection->xcb();
    const xcb_window_t root = m_connection->root();
    // What stays grabbed is not let go in between.
    for (const auto &[key, modifiers] : combinations) {
        if (!m_grabbed.contains({key, modifiers})) {
            xcb_grab_key(xcb, /*owner_events=*/0, root, modifiers, key, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC);
        }
    }
    for (const auto &[key, modifiers] : m_grabbed) {
        if (!combinations.contains({key, modifiers}))
            xcb_ungrab_key(xcb, key, root, modifiers);
    }
    m_grabbed = std::move(combinations);
    waitForServer(*m_connection);
}

void X11KeyGrabs::run()
{
    while (const XcbPointer<xcb_generic_event_t> event{xcb_wait_for_event(m_connection->xcb())}) {
        if ((event->response_type & 0x7F) == XCB_KEY_PRESS)
            endGrab(*m_connection, reinterpret_cast<const xcb_key_press_event_t &>(*event).time);
    }
}

} // namespace kestrova
