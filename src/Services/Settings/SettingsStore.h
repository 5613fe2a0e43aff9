#pragma once

#include "Concurrency/CoalescingTask.h"
#include "Models/Settings/AppSettings.h"
#include "Services/Settings/StoredDocument.h"

namespace kestrova {

/// The settings record on disk, under one key. What is saved counts at once, for every reader, and
/// is stored in the background. Otherwise each load() reads what is stored, so that a change on
/// disk is seen, too. load() from any thread, the others from the main thread.
class SettingsStore
{
public:
    /// The user defaults and the executor, on which documents are stored, outlive the store; what
    /// is posted there still uses the user defaults. When the executor is idle, all is stored.
    SettingsStore(UserDefaults &userDefaults, Executor &storage);

    static QString key();

    /// What was saved last, or else the stored record; the defaults when nothing is stored or it
    /// does not decode.
    AppSettings load() const;
    /// The same, for whoever is going to save what becomes of it.
    AppSettings loadToEdit();
    /// Replaces the stored record, soon: nothing is waited for. Of records that are saved in quick
    /// succession only the last may be stored. What does not decode, or was put there since
    /// loadToEdit() and the last save(), is set aside first. A failure leaves what was stored,
    /// which counts again then, and is only logged.
    void save(const AppSettings &settings);

private:
    struct Shared;

    const std::shared_ptr<Shared> m_shared;
    CoalescingTask m_storing;
};

} // namespace kestrova
