#include "Platform/Linux/X11/X11WithheldKeys.h"

#include "Platform/Linux/X11/BrokenPipeSignal.h"
#include "Platform/Linux/X11/XkbKeymap.h"

#include <sys/socket.h>

namespace kestrova {

X11WithheldKeys::X11WithheldKeys(const QList<HotkeyShortcut> &shortcuts,
                                 const QByteArray &displayName)
    : m_shortcuts(shortcuts), m_connection(displayName)
{
    if (!m_connection.isOpen())
        return;
    selectKeymapChanges(m_connection);
    followKeymap();
    m_thread = std::thread([this] { run(); });
}

X11WithheldKeys::~X11WithheldKeys()
{
    if (!m_thread.joinable())
        return;
    // Wakes the thread up, and the server ends the grabs of a connection that is closed.
    shutdown(xcb_get_file_descriptor(m_connection.xcb()), SHUT_RDWR);
    m_thread.join();
}

void X11WithheldKeys::followKeymap()
{
    const X11KeyTranslation translation(m_connection);
    std::set<X11KeyCombination> wanted;
    for (const HotkeyShortcut &shortcut : m_shortcuts) {
        for (const X11KeyCombination &combination : translation.combinations(shortcut))
            wanted.insert(combination);
    }
    // The server also tells of a new keymap when the next key comes from another keyboard: what
    // stays grabbed must not be let go in between.
    for (const X11KeyCombination &combination : wanted) {
        if (!m_grabbed.contains(combination))
            grab(combination);
    }
    for (const X11KeyCombination &combination : m_grabbed) {
        if (!wanted.contains(combination)) {
            xcb_ungrab_key(m_connection.xcb(), combination.key, m_connection.root(),
                           combination.modifiers);
        }
    }
    m_grabbed = std::move(wanted);
    // Waits until the server has it all.
    const XcbPointer<xcb_get_input_focus_reply_t> answer(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
}

void X11WithheldKeys::grab(const X11KeyCombination &combination)
{
    // The keyboard is frozen rather than grabbed, so that nothing typed meanwhile is lost.
    xcb_grab_key(m_connection.xcb(), /*owner_events=*/0, m_connection.root(), combination.modifiers,
                 combination.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
}

void X11WithheldKeys::run()
{
    blockBrokenPipeSignal();
    while (const XcbPointer<xcb_generic_event_t> event{xcb_wait_for_event(m_connection.xcb())}) {
        if ((event->response_type & 0x7F) == XCB_KEY_PRESS)
            release(reinterpret_cast<const xcb_key_press_event_t &>(*event));
        else if (isKeymapChange(m_connection, *event))
            followKeymap();
    }
}

void X11WithheldKeys::release(const xcb_key_press_event_t &press)
{
    // Not by allowing events first: those that wait would still come to this grab.
    xcb_ungrab_keyboard(m_connection.xcb(), press.time);
    xcb_flush(m_connection.xcb());
}

} // namespace kestrova
