#pragma once

#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Linux/Keys/OwnWindowKeys.h"
#include "Platform/Linux/X11/Keys/X11KeyGrabs.h"
#include "Platform/Linux/X11/Keys/X11KeyObserver.h"
#include "Platform/Linux/X11/Keys/X11PresentKeymap.h"

#include <QObject>

#include <memory>

namespace kestrova {

/// Global monitors see the keyboard through the RECORD extension, which sees
/// keys under other programs' grabs; local ones see what Qt gets for our windows. Which window gets
/// a key decides whose it is, so no key is reported twice.
class X11KeyEventMonitoring final : public KeyEventMonitoring
{
public:
    /// Needs a QCoreApplication. The display name is that of the display that Qt shows its windows
    /// on; empty means $DISPLAY. The posted keys outlive this.
    explicit X11KeyEventMonitoring(PostedKeys &postedKeys, const QByteArray &displayName = {});

    /// Null without the RECORD extension.
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types types,
                                              GlobalHandler handler) override;
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types types, LocalHandler handler) override;
    /// Null without the RECORD extension, which alone would see such keys.
    std::unique_ptr<Monitor> grab(const QList<HotkeyShortcut> &shortcuts) override;
    bool canType(const HotkeyShortcut &shortcut) override;

private:
    bool observe();
    void report(const KeyEvent &event);
    void grabShortcuts();
    std::optional<KeyEvent> translated(const QKeyEvent &key);

    PostedKeys &m_postedKeys;
    const QByteArray m_displayName;
    KeyEventHandlers m_global;
    KeyEventHandlers m_local;
    X11PresentKeymap m_keymap;
    OwnWindowKeys m_ownWindowKeys;
    QObject m_mainThread; // what the recording's thread posts to
    std::unique_ptr<X11KeyObserver> m_observer;
    std::shared_ptr<X11KeyGrabs> m_grabs; // once something was to be grabbed
    std::weak_ptr<const QList<HotkeyShortcut>> m_grabbed;
};

} // namespace kestrova
