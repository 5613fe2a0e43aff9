#pragma once

#include "Models/HotkeyShortcut.h"
#include "Platform/KeyEventMonitoring.h"
#include "Platform/Linux/X11/X11KeyTranslation.h"

#include <QList>

#include <set>
#include <thread>

namespace kestrova {

/// Keeps shortcuts from the windows of all programs, by passive grabs on a connection of its own.
/// The keyboard stays grabbed for as long as it takes to give it back, and no key that follows is
/// lost meanwhile: our own paste chord arrives also while the user still holds the shortcut.
/// Observers by RECORD see the shortcuts all the same. Ends with the X server.
class X11WithheldKeys final : public KeyEventMonitoring::Monitor
{
public:
    /// Withholds from the moment when this returns. Shortcuts that another program has grabbed
    /// remain that program's. An empty name means $DISPLAY.
    X11WithheldKeys(const QList<HotkeyShortcut> &shortcuts, const QByteArray &displayName);
    ~X11WithheldKeys() override;
    X11WithheldKeys(const X11WithheldKeys &) = delete;
    X11WithheldKeys &operator=(const X11WithheldKeys &) = delete;

private:
    void followKeymap();
    void grab(const X11KeyCombination &combination);
    void run();
    void release(const xcb_key_press_event_t &press);

    const QList<HotkeyShortcut> m_shortcuts;
    X11Connection m_connection;
    std::set<X11KeyCombination> m_grabbed; // the thread's own, once it runs
    std::thread m_thread;
};

} // namespace kestrova
