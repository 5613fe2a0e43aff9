#pragma once

#include "Concurrency/CoalescingTask.h"
#include "Services/Usage/CompactUsageLog.h"

namespace kestrova {

class UserDefaults;

/// The usage log in memory, and its document, which is stored in the background. Storing replaces
/// no events that it has not seen: those that somebody else stored meanwhile are taken in, and what
/// cannot be read is set aside. So is a document before it loses more than half of its events, and
/// it stays as it is where that cannot be done. A log that could not be stored is stored the next
/// time. Main thread.
class StoredUsageLog
{
public:
    /// Loads the document; one that cannot be read or does not decode counts as an empty log. The
    /// user defaults and the executor, on which the document is stored, outlive this; what is
    /// posted there still uses the user defaults. When the executor is idle, all is stored.
    StoredUsageLog(UserDefaults &userDefaults, const QString &key, Executor &storage);

    /// The present log.
    CompactUsageLog log() const;
    /// The event's numbers are finite.
    void append(const UsageEvent &event);
    /// Drops every event stamped before the cutoff, also of those to be taken in from now on;
    /// returns whether there was one.
    bool dropBefore(Date cutoff);
    /// What has been changed is stored, soon: nothing is waited for.
    void store();

private:
    struct Shared;

    std::shared_ptr<Shared> m_shared;
    CoalescingTask m_storing;
};

} // namespace kestrova
