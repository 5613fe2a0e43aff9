#pragma once

#include "Models/Settings/AppSettings.h"
#include "Services/Settings/StoredDocument.h"

namespace kestrova {

/// The settings record on disk, under one key. Keeps no copy: each load() reads what is stored,
/// so a saved change is seen by every reader at once. load() from any thread, the others from the
/// main thread.
class SettingsStore
{
public:
    /// The user defaults outlive the store.
    explicit SettingsStore(UserDefaults &userDefaults) : m_document(userDefaults, key()) {}

    static QString key();

    /// The stored record; the defaults when nothing is stored or it does not decode.
    AppSettings load() const;
    /// The same, for whoever is going to save what becomes of it.
    AppSettings loadToEdit();
    /// Replaces the stored record. What does not decode, or was put there since loadToEdit() and
    /// the last save(), is set aside first. A failure leaves what was stored and is not reported.
    void save(const AppSettings &settings);

private:
    StoredDocument m_document;
};

} // namespace kestrova
