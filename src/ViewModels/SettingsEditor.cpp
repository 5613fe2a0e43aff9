#include "ViewModels/SettingsEditor.h"

#include "ViewModels/HotkeyBindings.h"

namespace kestrova {

using namespace Qt::StringLiterals;

SettingsEditor::SettingsEditor(AppState &state, std::shared_ptr<SettingsStore> store,
                               const InsertionTargets &targets, std::function<void()> takeEffect)
    : m_state(state), m_store(std::move(store)), m_targets(targets),
      m_takeEffect(std::move(takeEffect))
{
}

void SettingsEditor::setGlobalShortcut(const HotkeyShortcut &shortcut)
{
    AppSettings settings = m_state.settings.get();
    if (const auto conflict = mainShortcutConflict(settings, shortcut)) {
        m_state.showError(*conflict);
        return;
    }
    settings.shortcut = shortcut;
    commit(settings);
    m_state.clearErrorIfNeeded();
}

void SettingsEditor::setHotbarShortcut(int slotIndex, const HotkeyShortcut &shortcut)
{
    if (!HotbarSlotAssignment::isSlotNumber(slotIndex))
        return;
    AppSettings settings = m_state.settings.get();
    if (const auto conflict = hotbarShortcutConflict(settings, slotIndex, shortcut)) {
        m_state.showError(*conflict);
        return;
    }
    settings.setHotbarShortcut(slotIndex, shortcut);
    commit(settings);
    m_state.clearErrorIfNeeded();
}

void SettingsEditor::assignHotbarSlotFromFrontmost(int slotIndex)
{
    if (!HotbarSlotAssignment::isSlotNumber(slotIndex))
        return;
    const auto candidate = m_targets.preferred();
    if (!candidate) {
        m_state.showError(u"Switch to the app you want, then try assigning the slot again."_s);
        return;
    }
    const QString identifier = candidate->bundleIdentifier.value_or(QString());
    if (identifier.isEmpty()) {
        m_state.showError(u"Could not resolve a bundle identifier for the selected application."_s);
        return;
    }
    AppSettings settings = m_state.settings.get();
    settings.setHotbarAssignment(slotIndex, identifier,
                                 candidate->localizedName.value_or(identifier));
    commit(settings);
    m_state.clearErrorIfNeeded();
}

void SettingsEditor::update(const std::function<void(AppSettings &)> &change)
{
    AppSettings settings = m_state.settings.get();
    change(settings);
    commit(settings);
}

void SettingsEditor::commit(const AppSettings &settings)
{
    AppSettings normalized = settings;
    normalized.hotbarAssignments =
        AppSettings::normalizedHotbarAssignments(settings.hotbarAssignments);
    m_state.settings.set(normalized);
    m_store->save(normalized);
    m_takeEffect();
}

} // namespace kestrova
