#pragma once

#include "Models/AppSettings.h"
#include "Platform/UserDefaults.h"

namespace kestrova {

/// The settings record on disk, under one key. Keeps no copy: each load() reads what is stored,
/// so a saved change is seen by every reader at once. load() from any thread, save() from the
/// main thread.
class SettingsStore
{
public:
    /// The user defaults outlive the store.
    explicit SettingsStore(UserDefaults &userDefaults) : m_userDefaults(userDefaults) {}

    static QString key();

    /// The stored record; the defaults when nothing is stored or it does not decode.
    AppSettings load() const;
    /// Replaces the stored record. Bytes that do not decode are set aside first. A failure
    /// leaves what was stored and is not reported.
    void save(const AppSettings &settings);

private:
    UserDefaults &m_userDefaults;
};

} // namespace kestrova
