#pragma once

#include "Platform/Linux/Keys/PostedKeys.h"
#include "Platform/Linux/X11/Keys/X11KeyTranslation.h"
#include "Platform/Linux/X11/Keys/X11RecordContext.h"

#include <bitset>
#include <chrono>
#include <functional>
#include <optional>
#include <thread>

namespace kestrova {

/// A thread that reports the key events that no window of this process gets, while they also go
/// where they would go without it, and changes of the keyboard: one when it has begun. It sleeps
/// while no key is down. It ends with the X server.
class X11KeyObserver
{
public:
    using Report = std::function<void(const KeyEvent &)>;

    /// While a key is down that no client receives: how often the server is asked something. It
    /// would hold the key's repeats back until it has an answer to write.
    static constexpr std::chrono::milliseconds heldKeyInterval{20};

    /// Reports from the moment when this returns, on the thread. The posted keys outlive this; an
    /// empty name means $DISPLAY.
    X11KeyObserver(PostedKeys &postedKeys, Report report, const QByteArray &displayName);
    /// Nothing is reported afterwards.
    ~X11KeyObserver();
    X11KeyObserver(const X11KeyObserver &) = delete;
    X11KeyObserver &operator=(const X11KeyObserver &) = delete;

    /// False without the RECORD extension, and once the server has gone.
    bool isOpen() const { return m_record.isOpen() && m_control.isOpen(); }

private:
    void run();
    void sleep();
    void takeKeys();
    void synchronize();
    bool takeEvents();
    void followKeyboard();
    void handle(std::size_t index);
    void attribute(std::size_t index, KeyEvent event);
    bool isOwn(xcb_window_t window);
    bool isReserved(const RecordedKey &delivery);
    void askForHeldKey();

    PostedKeys &m_postedKeys;
    const Report m_report;
    X11Connection m_control;
    X11RecordContext m_record;

    // The thread's own.
    qint32 m_ownProcess = 0; // as the server knows it
    std::optional<X11KeyTranslation> m_translation;
    std::vector<RecordedKey> m_keys; // that are still to be handled
    std::bitset<256> m_down;
    std::optional<xcb_keycode_t> m_heldKey; // the last one, when no client receives it

    std::thread m_thread;
};

} // namespace kestrova
