#include "Services/Shortcuts/GlobalHotkeyManager.h"

#include <algorithm>

namespace kestrova {

namespace {

bool matches(const HotkeyShortcut &shortcut, const KeyEvent &event)
{
    const quint32 differing = shortcut.modifiers ^ event.modifiers;
    return shortcut.keyCode == event.keyCode && (differing & HotkeyShortcut::allModifiers) == 0;
}

QList<HotkeyShortcut> exclusiveShortcutsOf(const QList<HotkeyBinding> &bindings)
{
    QList<HotkeyShortcut> shortcuts;
    for (const HotkeyBinding &binding : bindings) {
        if (binding.isExclusive)
            shortcuts.append(binding.shortcut);
    }
    return shortcuts;
}

bool areArmedAlike(const HotkeyBinding &a, const HotkeyBinding &b)
{
    return a.shortcut == b.shortcut && a.isExclusive == b.isExclusive;
}

} // namespace

void GlobalHotkeyManager::registerBindings(const QList<HotkeyBinding> &bindings)
{
    if (m_globalMonitor && m_localMonitor &&
        std::ranges::equal(m_bindings, bindings, areArmedAlike)) {
        m_bindings = bindings;
        return;
    }
    unregister();
    m_bindings = bindings;
    m_globalMonitor =
        m_monitoring.addGlobalMonitor(KeyEvent::keyDown | KeyEvent::keyboardChanged,
                                      [this](const KeyEvent &event) { handleGlobally(event); });
    m_localMonitor = m_monitoring.addLocalMonitor(
        KeyEvent::keyDown, [this](const KeyEvent &event) { return handle(event); });
    m_grabbedShortcuts = m_monitoring.grab(exclusiveShortcutsOf(bindings));
}

void GlobalHotkeyManager::unregister()
{
    m_globalMonitor.reset();
    m_localMonitor.reset();
    m_grabbedShortcuts.reset();
    m_bindings.clear();
}

HotkeyStatus GlobalHotkeyManager::status(const HotkeyBinding &binding) const
{
    const HotkeyShortcut &shortcut = binding.shortcut;
    HotkeyStatus status{.keys = shortcut.displayText()};
    if (m_monitoring.canType(shortcut))
        return status;
    status.state = HotkeyStatus::untypable;
    for (const auto modifier : {HotkeyShortcut::command, HotkeyShortcut::shift,
                                HotkeyShortcut::option, HotkeyShortcut::control}) {
        if (shortcut.has(modifier) && !m_monitoring.canType({shortcut.keyCode, modifier}))
            status.missingModifiers |= modifier;
    }
    return status;
}

void GlobalHotkeyManager::handleGlobally(const KeyEvent &event) const
{
    if (event.type == KeyEvent::keyboardChanged)
        m_changed();
    else
        handle(event);
}

bool GlobalHotkeyManager::handle(const KeyEvent &event) const
{
    const auto binding =
        std::find_if(m_bindings.begin(), m_bindings.end(), [&](const HotkeyBinding &candidate) {
            return matches(candidate.shortcut, event);
        });
    if (binding == m_bindings.end() || (event.isReserved && !binding->isExclusive))
        return false;
    const auto handler = binding->handler; // it may replace the bindings, or end this object
    handler();
    return true;
}

} // namespace kestrova
