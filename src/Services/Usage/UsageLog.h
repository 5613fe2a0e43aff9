#pragma once

#include "Models/Usage/UsageRecords.h"

#include <QByteArray>

namespace kestrova {

/// The usage events in recording order, and beside them their stored form, kept up to date: to
/// append an event or to drop the oldest costs the same however many there are.
class UsageLog
{
public:
    UsageLog() = default;
    explicit UsageLog(const QList<UsageEvent> &events);
    /// Reads as usageEventsFromJson() does and throws what it throws. What the document has for
    /// each event stays as it is, which takes much less time than to encode it anew.
    static UsageLog fromJson(const QByteArray &document);

    const QList<UsageEvent> &events() const { return m_events; }
    /// The document that usageEventsFromJson() reads as events().
    const QByteArray &json() const { return m_json; }

    /// The event's numbers are finite.
    void append(const UsageEvent &event);
    /// Appends those events of the other log whose ids this one does not have.
    void addMissing(const UsageLog &other);
    /// Drops every event stamped before the cutoff; returns whether there was one. One pass over
    /// the log if a clock that was set back has left it out of order.
    bool dropBefore(Date cutoff);

private:
    void append(const UsageEvent &event, QByteArrayView text);
    template <typename Visit>
    void forEach(Visit visit) const;
    void dropFirst(qsizetype count);

    QList<UsageEvent> m_events;
    QByteArray m_json = "[]";
    QList<qsizetype> m_textSizes; // of each event in m_json
    bool m_isChronological = true;
};

} // namespace kestrova
