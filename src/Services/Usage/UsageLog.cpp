#include "Services/Usage/UsageLog.h"

#include "Models/Usage/UsageEventsJson.h"

#include <QSet>

#include <algorithm>
#include <numeric>

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

    if (!m_events.isEmpty() && event.timestamp < m_events.last().timestamp)
        m_isChronological = false;
    m_events.append(event);
}

void UsageLog::addMissing(const UsageLog &other)
{
    QSet<QUuid> ids;
    ids.reserve(m_events.size());
    for (const UsageEvent &event : m_events)
        ids.insert(event.id);
    other.forEach([&](const UsageEvent &event, QByteArrayView text) {
        if (!ids.contains(event.id))
            append(event, text);
    });
}

template <typename Visit>
void UsageLog::forEach(Visit visit) const
{
    qsizetype begin = 1; // behind the bracket; each text is followed by a comma or the last bracket
    for (qsizetype i = 0; i < m_events.size(); ++i) {
        visit(m_events[i], QByteArrayView(m_json).sliced(begin, m_textSizes[i]));
        begin += m_textSizes[i] + 1;
    }
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
    UsageLog kept;
    forEach([&](const UsageEvent &event, QByteArrayView text) {
        if (isKept(event))
            kept.append(event, text);
    });
    *this = std::move(kept);
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
    const auto firstKept = m_textSizes.cbegin() + count;
    m_json.remove(0, std::accumulate(m_textSizes.cbegin(), firstKept, count));
    m_json.front() = '[';
    m_textSizes.remove(0, count);
    m_events.remove(0, count);
}

} // namespace kestrova
