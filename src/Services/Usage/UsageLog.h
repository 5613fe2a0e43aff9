#pragma once

#include "Models/Usage/UsageRecords.h"

#include <QByteArray>

namespace kestrova {

class CompactUsageLog;

/// A usage log as it is stored, while it is changed: the events in recording order, and the text of
/// each.
class UsageLog
{
public:
    UsageLog() = default;
    explicit UsageLog(const QList<UsageEvent> &events);
    /// Reads as usageEventsFromJson() does and throws what it throws. What the document has for
    /// each event stays as it is, which takes much less time than to encode it anew.
    static UsageLog fromJson(const QByteArray &document);
    /// Appends events to a document that fromJson() reads, without reading it.
    static void appendTo(QByteArray &document, const QList<UsageEvent> &events);

    const QList<UsageEvent> &events() const { return m_events; }
    /// The document that usageEventsFromJson() reads as events().
    const QByteArray &json() const { return m_json; }

    /// The event's numbers are finite.
    void append(const UsageEvent &event);
    /// Appends those events of the other log whose ids this one does not have.
    void addMissing(const CompactUsageLog &other);
    /// Drops every event stamped before the cutoff; returns whether there was one.
    bool dropBefore(Date cutoff);

private:
    void append(const UsageEvent &event, QByteArrayView text);

    QList<UsageEvent> m_events;
    QByteArray m_json = "[]";
    QList<qsizetype> m_textSizes; // of each event in m_json
};

} // namespace kestrova
