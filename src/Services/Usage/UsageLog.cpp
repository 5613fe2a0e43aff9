#include "Services/Usage/UsageLog.h"

#include "Models/Usage/UsageEventsJson.h"
#include "Services/Usage/CompactUsageLog.h"

#include <QSet>

#include <algorithm>
#include <cctype>
#include <utility>

namespace kestrova {

UsageLog::UsageLog(const QList<UsageEvent> &events)
{
    for (const UsageEvent &event : events)
        append(event);
}

UsageLog UsageLog::fromJson(const QByteArray &document)
{
    UsageLog log;
    log.m_json.reserve(document.size());
    readUsageEvents(document, [&log](const UsageEvent &event, QByteArrayView text) {
        log.append(event, text);
    });
    return log;
}

void UsageLog::appendTo(QByteArray &document, const QList<UsageEvent> &events)
{
    document.truncate(document.lastIndexOf(']'));
    const auto last = std::find_if(document.crbegin(), document.crend(),
                                   [](uchar character) { return std::isspace(character) == 0; });
    bool isEmpty = *last == '[';
    for (const UsageEvent &event : events) {
        if (!std::exchange(isEmpty, false))
            document.append(',');
        appendJson(event, document);
    }
    document.append(']');
}

void UsageLog::append(const UsageEvent &event)
{
    QByteArray text;
    appendJson(event, text);
    append(event, text);
}

void UsageLog::append(const UsageEvent &event, QByteArrayView text)
{
    if (m_events.isEmpty())
        m_json.chop(1);
    else
        m_json.back() = ',';
    m_json.append(text).append(']');
    m_textSizes.append(text.size());
    m_events.append(event);
}

void UsageLog::addMissing(const CompactUsageLog &other)
{
    QSet<QUuid> ids;
    ids.reserve(m_events.size());
    for (const UsageEvent &event : m_events)
        ids.insert(event.id);
    for (const CompactUsageLog::Entry &entry : other.entries()) {
        if (!ids.contains(entry.id))
            append(other.event(entry));
    }
}

bool UsageLog::dropBefore(Date cutoff)
{
    UsageLog kept;
    qsizetype begin = 1; // behind the bracket; each text is followed by a comma or the last bracket
    for (qsizetype i = 0; i < m_events.size(); ++i) {
        if (m_events[i].timestamp >= cutoff)
            kept.append(m_events[i], QByteArrayView(m_json).sliced(begin, m_textSizes[i]));
        begin += m_textSizes[i] + 1;
    }
    const bool hasDropped = kept.m_events.size() < m_events.size();
    *this = std::move(kept);
    return hasDropped;
}

} // namespace kestrova
