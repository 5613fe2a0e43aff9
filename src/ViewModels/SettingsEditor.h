#pragma once

#include "Services/Settings/SettingsStore.h"
#include "ViewModels/AppState.h"
#include "ViewModels/InsertionTargets.h"

#include <functional>
#include <memory>

namespace kestrova {

/// Changes the settings: each change is shown, saved, and then takes effect. What is refused is
/// shown as an error and changes nothing. Main thread; nothing throws.
class SettingsEditor
{
public:
    /// takeEffect is called after each change, once it is saved. State and targets outlive this.
    SettingsEditor(AppState &state, std::shared_ptr<SettingsStore> store,
                   const InsertionTargets &targets, std::function<void()> takeEffect);

    /// As the operations of the same names of AppController.
    void setGlobalShortcut(const HotkeyShortcut &shortcut);
    void setHotbarShortcut(int slotIndex, const HotkeyShortcut &shortcut);
    void assignHotbarSlotFromFrontmost(int slotIndex);
    void update(const std::function<void(AppSettings &)> &change);

private:
    void commit(const AppSettings &settings);

    AppState &m_state;
    const std::shared_ptr<SettingsStore> m_store;
    const InsertionTargets &m_targets;
    const std::function<void()> m_takeEffect;
};

} // namespace kestrova
