#include "Services/Shortcuts/NamedShortcutManager.h"

#include <algorithm>

namespace kestrova {

NamedShortcutManager::NamedShortcutManager(GlobalShortcuts &shortcuts)
    : m_shortcuts(shortcuts),
      m_observation(shortcuts.observe(
          {.activated = [this](const QString &id, const QByteArray &) { handle(id); },
           .changed = [this] { m_changed(); }}))
{
}

void NamedShortcutManager::registerBindings(const QList<HotkeyBinding> &bindings)
{
    m_bindings = bindings;
    QList<NamedShortcut> wanted;
    for (const HotkeyBinding &binding : bindings)
        wanted.append({binding.id, binding.description, binding.shortcut});
    if (m_asked == wanted)
        return;
    m_asked = wanted;
    m_shortcuts.bind(wanted);
}

HotkeyStatus NamedShortcutManager::status(const HotkeyBinding &binding) const
{
    switch (m_shortcuts.binding(binding.id)) {
    case GlobalShortcuts::Binding::none:
    case GlobalShortcuts::Binding::pending:
        return {HotkeyStatus::pending, binding.shortcut.displayText()};
    case GlobalShortcuts::Binding::bound:
        return {HotkeyStatus::armed, m_shortcuts.triggerText(binding.id)};
    case GlobalShortcuts::Binding::refused:
        return {HotkeyStatus::refused};
    }
    Q_UNREACHABLE();
}

ShortcutEditing NamedShortcutManager::editing() const
{
    return m_shortcuts.canConfigure() ? ShortcutEditing::inDesktopDialog
                                      : ShortcutEditing::inDesktopSettings;
}

void NamedShortcutManager::handle(const QString &id) const
{
    const auto binding = std::ranges::find(m_bindings, id, &HotkeyBinding::id);
    if (binding == m_bindings.end())
        return;
    const auto handler = binding->handler; // it may replace the bindings, or end this object
    handler();
}

} // namespace kestrova
