#include "Services/Shortcuts/NamedShortcutManager.h"

#include <algorithm>

namespace kestrova {

NamedShortcutManager::NamedShortcutManager(GlobalShortcuts &shortcuts)
    : m_shortcuts(shortcuts),
      m_observation(shortcuts.observe(
          {.activated = [this](const QString &id, const QByteArray &) { handle(id); },
           .changed = [] {}}))
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

void NamedShortcutManager::handle(const QString &id) const
{
    const auto binding = std::ranges::find(m_bindings, id, &HotkeyBinding::id);
    if (binding == m_bindings.end())
        return;
    const auto handler = binding->handler; // it may replace the bindings, or end this object
    handler();
}

} // namespace kestrova
