#pragma once

#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Linux/X11/Keys/X11KeyFilter.h"
#include "Platform/Linux/X11/Keys/X11KeyGrabs.h"
#include "Platform/Linux/X11/Keys/X11KeyObserver.h"

#include <QObject>

#include <memory>

namespace kestrova {

/// Global monitors see the keyboard through the RECORD extension, which sees
/// keys under other programs' grabs; local ones see what Qt gets for our windows. Which window gets
/// a key decides whose it is, so no key is reported twice.
class X11KeyEventMonitoring final : public KeyEventMonitoring
{
public:
    /// Needs a QCoreApplication. The connection is to the display that Qt shows its windows on, and
    /// the display name, which may be empty, is that of the same. The connection and the posted
    /// keys outlive this.
    X11KeyEventMonitoring(X11Connection &connection, PostedKeys &postedKeys,
                          const QByteArray &displayName = {});

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
    const X11KeyTranslation &translation();

    X11Connection &m_connection;
    PostedKeys &m_postedKeys;
    const QByteArray m_displayName;
    KeyEventHandlers m_global;
    KeyEventHandlers m_local;
    X11KeyFilter m_filter;
    QObject m_mainThread; // what the recording's thread posts to
    std::unique_ptr<X11KeyObserver> m_observer;
    std::optional<X11KeyTranslation> m_translation; // read when it is needed
    std::shared_ptr<X11KeyGrabs> m_grabs;           // once something was to be grabbed
    std::weak_ptr<const QList<HotkeyShortcut>> m_grabbed;
};

} // namespace kestrova
