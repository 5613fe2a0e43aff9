#include "Services/UsageLog.h"

#include "Models/UsageEventsJson.h"

#include <algorithm>

namespace kestrova {

UsageLog::UsageLog(const QList<UsageEvent> &events) : m_events(events)
{
    for (const UsageEvent &event : events)
        appendToJson(event);
    m_isChronological =
        std::is_sorted(events.begin(), events.end(), [](const UsageEvent &a, const UsageEvent &b) {
            return a.timestamp < b.timestamp;
        });
}

void UsageLog::append(const UsageEvent &event)
{
    if (!m_events.isEmpty() && event.timestamp < m_events.last().timestamp)
        m_isChronological = false;
    m_events.append(event);
    appendToJson(event);
}

void UsageLog::appendToJson(const UsageEvent &event)
{
    if (m_json == "[]")
        m_json.chop(1);
    else
        m_json.back() = ',';
    appendJson(event, m_json);
    m_json.append(']');
}

bool UsageLog::dropBefore(Date cutoff)
{
    const auto isKept = [cutoff](const UsageEvent &event) { return event.timestamp >= cutoff; };
    const auto firstKept = std::find_if(m_events.cbegin(), m_events.cend(), isKept);
    const qsizetype leading = firstKept - m_events.cbegin();
    if (m_isChronological || std::all_of(firstKept, m_events.cend(), isKept)) {
        dropFirst(leading);
        return leading > 0;
    }
    QList<UsageEvent> kept;
    std::copy_if(firstKept, m_events.cend(), std::back_inserter(kept), isKept);
    *this = UsageLog(kept);
    return true;
}

void UsageLog::dropFirst(qsizetype count)
{
    if (count == 0)
        return;
    if (count == m_events.size()) {
        *this = UsageLog();
        return;
    }
    // Each event's text follows one bracket or comma; the comma before the first that stays becomes
    // the bracket. Neither removal moves what stays.
    QByteArray dropped;
    for (qsizetype i = 0; i < count; ++i) {
        dropped.append(',');
        appendJson(m_events[i], dropped);
    }
    m_json.remove(0, dropped.size());
    m_json.front() = '[';
    m_events.remove(0, count);
}

} // namespace kestrova
