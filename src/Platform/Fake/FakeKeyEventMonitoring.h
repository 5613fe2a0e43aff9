#pragma once

#include "Platform/Keys/KeyEventHandlers.h"

namespace kestrova {

class FakeKeyEventMonitoringControl
{
public:
    virtual ~FakeKeyEventMonitoringControl() = default;

    /// Whether addGlobalMonitor() gives a monitor from now on.
    virtual void setGlobalAvailable(bool isAvailable) = 0;
    /// Whether addLocalMonitor() gives a monitor from now on.
    virtual void setLocalAvailable(bool isAvailable) = 0;
    /// Plays an event while another program has the keyboard.
    virtual void pressGlobally(const KeyEvent &event) = 0;
    /// Plays an event in a window of our own; true when a handler kept it from that window.
    virtual bool pressLocally(const KeyEvent &event) = 0;
    virtual int globalMonitorCount() const = 0;
    virtual int localMonitorCount() const = 0;
    /// Those of every withhold() that has not ended, in order.
    virtual QList<HotkeyShortcut> withheld() const = 0;
    /// From now on no key of the keyboard carries these modifiers; monitors are told.
    virtual void setMissingModifiers(quint32 modifiers) = 0;
};

/// Main thread.
class FakeKeyEventMonitoring final : public KeyEventMonitoring, public FakeKeyEventMonitoringControl
{
public:
    std::unique_ptr<Monitor> addGlobalMonitor(KeyEvent::Types types,
                                              GlobalHandler handler) override;
    std::unique_ptr<Monitor> addLocalMonitor(KeyEvent::Types types, LocalHandler handler) override;
    std::unique_ptr<Monitor> withhold(const QList<HotkeyShortcut> &shortcuts) override;
    bool canType(const HotkeyShortcut &shortcut) override;

    void setGlobalAvailable(bool isAvailable) override { m_isGlobalAvailable = isAvailable; }
    void setLocalAvailable(bool isAvailable) override { m_isLocalAvailable = isAvailable; }
    void pressGlobally(const KeyEvent &event) override { m_global.call(event); }
    bool pressLocally(const KeyEvent &event) override { return m_local.call(event); }
    int globalMonitorCount() const override { return m_global.count(); }
    int localMonitorCount() const override { return m_local.count(); }
    QList<HotkeyShortcut> withheld() const override;
    void setMissingModifiers(quint32 modifiers) override;

private:
    KeyEventHandlers m_global;
    KeyEventHandlers m_local;
    std::vector<std::weak_ptr<const QList<HotkeyShortcut>>> m_withheld;
    quint32 m_missingModifiers = 0;
    bool m_isGlobalAvailable = true;
    bool m_isLocalAvailable = true;
};

} // namespace kestrova
