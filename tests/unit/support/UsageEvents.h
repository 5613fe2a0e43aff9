#pragma once

#include "Models/Usage/UsageRecords.h"

namespace kestrova {

/// An event with a fresh identifier, without slot and target.
inline UsageEvent eventAt(Date timestamp, qint64 words = 1)
{
    UsageEvent event;
    event.id = QUuid::createUuid();
    event.timestamp = timestamp;
    event.wordCount = words;
    event.durationMinutes = 0.5;
    return event;
}

inline UsageEvent eventFor(const std::optional<QString> &appName, qint64 words = 1)
{
    UsageEvent event = eventAt(Date{0}, words);
    event.targetAppName = appName;
    return event;
}

} // namespace kestrova
