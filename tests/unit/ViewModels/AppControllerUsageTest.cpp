#include "ViewModels/ControllerTest.h"

#include "Models/Usage/UsageEventsJson.h"
#include "Services/Usage/UsageLog.h"
#include "support/UsageEvents.h"

namespace kestrova {
namespace {

class AppControllerUsageTest : public ControllerTest
{
protected:
    void store(const QList<UsageEvent> &events)
    {
        fake.userDefaults.put(UsageAnalyticsService::standardKey(), UsageLog(events).json());
    }
    qint64 storedCount() const
    {
        return usageEventsFromJson(*fake.userDefaults.stored(UsageAnalyticsService::standardKey()))
            .size();
    }
};

TEST_F(AppControllerUsageTest, TheStoredLogIsShownFromTheStart)
{
    store({eventAt(date("2023-03-15T11:59:59+01:00"), 100), eventAt(now, 5)});
    now = date("2024-03-15T12:30:00+01:00");
    launch();
    EXPECT_EQ(state().usageSnapshot.get().thisHour.words, 5);
    EXPECT_EQ(state().usageTrendBuckets.get().size(), 365) << "the period is daily at first";
    EXPECT_EQ(state().usageTrendBuckets.get().last().words, 5);
    EXPECT_EQ(storedCount(), 1) << "what is older than twelve months is forgotten";
}

TEST_F(AppControllerUsageTest, RefreshingPrunesAndFollowsTheClock)
{
    store({eventAt(now, 5)});
    launch();
    now = date("2024-03-16T12:00:00+01:00");
    controller->refreshUsageAnalytics();
    EXPECT_EQ(changes(), QStringList({u"usageSnapshot"_s, u"usageTrendBuckets"_s}));
    EXPECT_EQ(state().usageSnapshot.get().today.words, 0);
    EXPECT_EQ(state().usageSnapshot.get().thisMonth.words, 5);

    now = date("2025-03-15T12:00:01+01:00");
    controller->refreshUsageAnalytics();
    EXPECT_EQ(storedCount(), 0);
}

TEST_F(AppControllerUsageTest, ANewTrendPeriodChangesTheBucketsAlone)
{
    store({eventAt(date("2024-03-15T11:30:00+01:00"), 5)});
    launch();
    now = date("2024-03-16T12:00:00+01:00");
    controller->setUsageTrendPeriod(UsageTrendPeriod::weekly);
    EXPECT_EQ(changes(), QStringList({u"usageTrendPeriod"_s, u"usageTrendBuckets"_s}));
    EXPECT_EQ(state().usageTrendBuckets.get().size(), 12);
    EXPECT_EQ(state().usageTrendBuckets.get().last().words, 5);

    controller->refreshUsageAnalytics();
    EXPECT_EQ(state().usageTrendBuckets.get().size(), 12) << "the period stays";
}

} // namespace
} // namespace kestrova
