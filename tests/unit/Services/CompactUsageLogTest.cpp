#include "Services/Usage/CompactUsageLog.h"
#include "Models/ReadableError.h"
#include "Services/Usage/UsageLog.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// Each combination of what may be absent, with equal and with different values.
QList<UsageEvent> eventsOfAllKinds()
{
    QList<UsageEvent> events;
    for (const std::optional<qint64> slot :
         {std::optional<qint64>(), std::optional<qint64>(0), std::optional<qint64>(-9),
          std::optional(std::numeric_limits<qint64>::max())}) {
        for (const std::optional<QString> &identifier :
             {std::optional<QString>(), std::optional(u""_s), std::optional(u"org.example.A"_s)}) {
            for (const std::optional<QString> &name :
                 {std::optional<QString>(), std::optional(u""_s), std::optional(u"A"_s)}) {
                UsageEvent event = eventAt(Date{double(events.size())}, events.size());
                event.slotIndex = slot;
                event.targetBundleIdentifier = identifier;
                event.targetAppName = name;
                events.append(event);
            }
        }
    }
    return events;
}

TEST(CompactUsageLog, HoldsEveryEventAsItIs)
{
    QList<UsageEvent> events = eventsOfAllKinds();
    events[0].wordCount = std::numeric_limits<qint64>::min();
    events[0].durationMinutes = std::numeric_limits<double>::max();
    EXPECT_EQ(CompactUsageLog(events).events(), events);
    EXPECT_EQ(CompactUsageLog::fromJson(UsageLog(events).json()).events(), events);
    EXPECT_THROW(CompactUsageLog::fromJson("[1]"), ReadableError);
}

TEST(CompactUsageLog, HoldsWhatEventsHaveInCommonOnce)
{
    const QList<UsageEvent> events = eventsOfAllKinds();
    CompactUsageLog log(events);
    const auto kinds = log.targets().size();
    EXPECT_EQ(kinds, events.size());
    for (const UsageEvent &event : events)
        log.append(event);
    EXPECT_EQ(log.targets().size(), kinds);
    EXPECT_EQ(log.events(), events + events);
}

TEST(CompactUsageLog, ACopyStaysWhenTheOtherChanges)
{
    CompactUsageLog log({eventAt(Date{1})});
    const CompactUsageLog copy = log;
    const QList<UsageEvent> events = copy.events();
    log.append(eventAt(Date{2}));
    EXPECT_TRUE(log.dropBefore(Date{2}));
    EXPECT_EQ(copy.events(), events);
    EXPECT_EQ(log.entries().size(), 1);
}

} // namespace
} // namespace kestrova
