#pragma once

#include "Services/Protocols.h"

#include "Platform/Keys/KeyEventMonitoring.h"

#include <memory>

namespace kestrova {

/// Calls the handler of the first binding whose shortcut goes down, in any program's window, and
/// again for every repeat while it is held. The window in front does not get the keystroke of an
/// exclusive binding, where that can be had: otherwise every dictation would begin with what the
/// shortcut types. Main thread.
class GlobalHotkeyManager final : public HotkeyManaging
{
public:
    /// The monitoring outlives this.
    explicit GlobalHotkeyManager(KeyEventMonitoring &monitoring) : m_monitoring(monitoring) {}

    /// Where the shortcuts are those that are armed, nothing is asked of the system: the handlers
    /// alone are replaced. A direction that the system does not let us observe never calls a
    /// handler, and is tried again the next time. Handlers may call this, unregister(), and destroy
    /// the manager.
    void registerBindings(const QList<HotkeyBinding> &bindings) override;
    void unregister() override;
    /// Armed unless the present keyboard lacks what it takes to type it.
    HotkeyStatus status(const HotkeyBinding &binding) const override;
    void observeStatus(std::function<void()> changed) override { m_changed = std::move(changed); }
    ShortcutEditing editing() const override { return ShortcutEditing::inProgram; }
    void configure() override {}

private:
    void handleGlobally(const KeyEvent &event) const;
    bool handle(const KeyEvent &event) const;

    KeyEventMonitoring &m_monitoring;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_globalMonitor;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_localMonitor;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_grabbedShortcuts;
    QList<HotkeyBinding> m_bindings;
    std::function<void()> m_changed = [] {};
};

} // namespace kestrova
