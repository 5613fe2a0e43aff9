#pragma once

#include "Platform/Keys/KeyEventHandlers.h"

namespace kestrova {

/// Main thread.
class FakeKeyEventMonitoring final : public KeyEventMonitoring
{
public:
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types types,
                                              GlobalHandler handler) override;
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types types, LocalHandler handler) override;
    std::unique_ptr<Monitor> grab(const QList<HotkeyShortcut> &shortcuts) override;
    bool canType(const HotkeyShortcut &shortcut) override;

    /// Whether addGlobalMonitor() gives a monitor from now on.
    void setGlobalAvailable(bool isAvailable) { m_isGlobalAvailable = isAvailable; }
    /// Whether addLocalMonitor() gives a monitor from now on.
    void setLocalAvailable(bool isAvailable) { m_isLocalAvailable = isAvailable; }
    /// Plays an event while another program has the keyboard.
    void pressGlobally(const KeyEvent &event) { m_global.call(event); }
    /// Plays an event in a window of our own; true when a handler kept it from that window.
    bool pressLocally(const KeyEvent &event) { return m_local.call(event); }
    int globalMonitorCount() const { return m_global.count(); }
    int localMonitorCount() const { return m_local.count(); }
    /// Those of every grab() that has not ended, in order.
    QList<HotkeyShortcut> grabbed() const;
    /// How often a monitor or a grab was asked for.
    int requestCount() const { return m_requestCount; }
    /// From now on no key of the keyboard carries these modifiers; monitors are told.
    void setMissingModifiers(quint32 modifiers);

private:
    KeyEventHandlers m_global;
    KeyEventHandlers m_local;
    std::vector<std::weak_ptr<const QList<HotkeyShortcut>>> m_grabbed;
    int m_requestCount = 0;
    quint32 m_missingModifiers = 0;
    bool m_isGlobalAvailable = true;
    bool m_isLocalAvailable = true;
};

} // namespace kestrova
