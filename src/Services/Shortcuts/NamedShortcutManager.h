#pragma once

#include "Services/Protocols.h"

#include "Platform/Keys/GlobalShortcuts.h"

#include <memory>

namespace kestrova {

/// Calls the handler of a binding when the desktop says that its shortcut went down. The place of
/// GlobalHotkeyManager on desktops that show a program no keys. Main thread.
class NamedShortcutManager final : public HotkeyManaging
{
public:
    /// The shortcuts outlive this.
    explicit NamedShortcutManager(GlobalShortcuts &shortcuts);

    /// The desktop is asked only when it would be for something else than before, because its user
    /// may be asked each time. Handlers may call this, unregister(), and destroy the manager.
    void registerBindings(const QList<HotkeyBinding> &bindings) override;
    /// The desktop keeps the shortcuts, which do nothing meanwhile.
    void unregister() override { m_bindings.clear(); }
    HotkeyStatus status(const HotkeyBinding &binding) const override;
    void observeStatus(std::function<void()> changed) override { m_changed = std::move(changed); }
    ShortcutEditing editing() const override;
    void configure() override { m_shortcuts.configure(); }

private:
    void handle(const QString &id) const;

    GlobalShortcuts &m_shortcuts;
    std::optional<QList<NamedShortcut>> m_asked;
    QList<HotkeyBinding> m_bindings;
    std::function<void()> m_changed = [] {};
    std::unique_ptr<Observation> m_observation;
};

} // namespace kestrova
