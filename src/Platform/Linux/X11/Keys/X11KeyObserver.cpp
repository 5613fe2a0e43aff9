#include "Platform/Linux/X11/Keys/X11KeyObserver.h"

#include "Platform/Linux/X11/Connection/X11ClientProcess.h"
#include "Platform/Linux/X11/Keys/XkbKeymap.h"

#include <array>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kestrova {

X11KeyObserver::X11KeyObserver(PostedKeys &postedKeys, Report report, const QByteArray &displayName)
    : m_postedKeys(postedKeys), m_report(std::move(report)), m_control(displayName),
      m_record(m_control, displayName)
{
    if (isOpen())
        m_thread = std::thread([this] { run(); });
}

X11KeyObserver::~X11KeyObserver()
{
    if (!m_thread.joinable())
        return;
    // Wakes the thread up wherever it waits, even for a server that does not answer.
    for (const int descriptor : {m_record.descriptor(), xcb_get_file_descriptor(m_control.xcb())})
        shutdown(descriptor, SHUT_RDWR);
    m_thread.join();
}

void X11KeyObserver::run()
{
    m_ownProcess = clientProcess(m_control, xcb_get_setup(m_control.xcb())->resource_id_base);
    selectKeymapChanges(m_control);
    followKeyboard();
    while (isOpen()) {
        m_record.read(m_keys);
        if (m_keys.empty())
            sleep();
        else
            takeKeys();
    }
}

void X11KeyObserver::sleep()
{
    // An event that came along with an answer wakes nobody up.
    if (takeEvents()) {
        synchronize();
        return;
    }
    std::array<pollfd, 2> descriptors{{{m_record.descriptor(), POLLIN, 0},
                                       {xcb_get_file_descriptor(m_control.xcb()), POLLIN, 0}}};
    poll(descriptors.data(), descriptors.size(), m_heldKey ? int(heldKeyInterval.count()) : -1);
    if (descriptors[1].revents != 0)
        synchronize();
    else if (descriptors[0].revents == 0 && m_heldKey)
        askForHeldKey();
}

// The answer itself matters when the release never comes, as after a switch of the console.
void X11KeyObserver::askForHeldKey()
{
    const XcbPointer<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_control.xcb(), xcb_query_keymap(m_control.xcb()), nullptr));
    const bool isDown = reply && ((reply->keys[*m_heldKey / 8] >> (*m_heldKey % 8)) & 1);
    if (isDown)
        return;
    m_down.reset(*m_heldKey);
    m_heldKey.reset();
}

void X11KeyObserver::takeKeys()
{
    const std::size_t count = m_keys.size();
    synchronize();
    m_record.read(m_keys);
    for (std::size_t i = 0; i < count; ++i)
        handle(i);
    m_keys.erase(m_keys.begin(), m_keys.begin() + std::ptrdiff_t(count));
}

// When the server has answered, it has also written the keys that it held back, who got the keys
// that were read so far, and which keymap they were pressed in. Unless an event came along, because
// that may tell of the next key.
void X11KeyObserver::synchronize()
{
    do {
        const XcbPointer<xcb_get_input_focus_reply_t> answer(xcb_get_input_focus_reply(
            m_control.xcb(), xcb_get_input_focus(m_control.xcb()), nullptr));
    } while (takeEvents());
}

bool X11KeyObserver::takeEvents()
{
    bool isAny = false;
    bool hasKeymapChanged = false;
    while (
        const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_queued_event(m_control.xcb())}) {
        isAny = true;
        hasKeymapChanged = hasKeymapChanged || isKeymapChange(m_control, *event);
    }
    if (hasKeymapChanged)
        followKeyboard();
    return isAny;
}

// The server also tells of a new keymap when the next key comes from another keyboard.
void X11KeyObserver::followKeyboard()
{
    const X11KeyTranslation translation(m_control);
    if (m_translation == translation)
        return;
    m_translation = translation;
    m_report({.type = KeyEvent::keyboardChanged});
}

void X11KeyObserver::handle(std::size_t index)
{
    const RecordedKey &key = m_keys[index];
    if (key.isDelivered)
        return;
    const bool isRepeat = key.isPress && m_down.test(key.key);
    m_down.set(key.key, key.isPress);
    if (!key.isPress && m_heldKey == key.key)
        m_heldKey.reset();
    if (m_postedKeys.take(PostedKeys::ofAllWindows, {key.isPress, key.key}, key.time))
        return;
    auto event =
        key.isPress ? m_translation->pressed(key.key, key.state) : m_translation->released(key.key);
    if (!event)
        return;
    event->isRepeat = isRepeat;
    attribute(index, *event);
}

void X11KeyObserver::attribute(std::size_t index, KeyEvent event)
{
    const RecordedKey &key = m_keys[index];
    // Which window has the focus would not tell: grabs send keys elsewhere, and it is known only
    // some time later.
    bool isReceived = false;
    bool isOurs = false;
    for (std::size_t i = index + 1; i < m_keys.size(); ++i) {
        if (!m_keys[i].isDeliveryOf(key))
            continue;
        isReceived = true;
        isOurs = isOurs || isOwn(m_keys[i].window);
        event.isReserved = event.isReserved || isReserved(m_keys[i]);
    }
    if (event.type == KeyEvent::keyDown)
        m_heldKey = isReceived ? std::nullopt : std::optional(key.key);
    if (!isOurs)
        m_report(event);
}

// Window managers and the like grab their keys on the root window; no window with the focus is told
// of keys there.
bool X11KeyObserver::isReserved(const RecordedKey &delivery)
{
    return delivery.window == m_control.root() &&
           clientProcess(m_control, delivery.client) != m_ownProcess;
}

bool X11KeyObserver::isOwn(xcb_window_t window)
{
    // Not getpid(): in a container the server knows us by another number.
    if (const qint32 client = clientProcess(m_control, window); client != 0)
        return client == m_ownProcess;
    return qint32(m_control.value(window, "_NET_WM_PID")) == getpid();
}

} // namespace kestrova
