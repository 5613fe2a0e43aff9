#include "Services/Usage/UsageAnalyticsService.h"
#include "Concurrency/InlineExecutor.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Platform/Fake/FakeUserDefaults.h"
#include "Services/StraightforwardUsage.h"
#include "Services/Usage/UsageLog.h"
#include "support/DateText.h"
#include "support/ManualExecutors.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class UsageAnalyticsServiceTest : public testing::Test
{
protected:
    UsageAnalyticsService service(int retentionMonths = 12)
    {
        return {defaults, storage, key, retentionMonths, calendar, [this] { return now; }};
    }

    QList<UsageEvent> stored() const { return usageEventsFromJson(*defaults.stored(key)); }

    void store(const QList<UsageEvent> &events) { defaults.put(key, UsageLog(events).json()); }

    static qint64 recordingsOf(UsageAnalyticsService &service)
    {
        qint64 recordings = 0;
        for (const auto &application : service.dashboardSnapshot(Date{}).topApplications)
            recordings += application.recordings;
        return recordings;
    }

    FakeUserDefaults defaults;
    InlineExecutor storage;
    const Calendar calendar{QTimeZone("Europe/Berlin"), Qt::Monday, QLocale::c()};
    const QString key = UsageAnalyticsService::standardKey();
    Date now = date("2024-03-31T12:00:00.250+02:00");
    const Date cutoff = date("2023-03-31T12:00:00.250+02:00");
    const Date justBeforeCutoff{cutoff.secondsSinceReferenceDate - 1};
};

TEST_F(UsageAnalyticsServiceTest, WithNothingStoredTheLogIsEmptyAndNothingIsWritten)
{
    UsageAnalyticsService service = this->service();
    EXPECT_EQ(recordingsOf(service), 0);
    service.refreshRetention();
    EXPECT_FALSE(defaults.stored(key));
}

TEST_F(UsageAnalyticsServiceTest, TheApplicationsLogHasItsOwnKeyAndAYearsRetention)
{
    EXPECT_EQ(key, u"kestrova.usage.v1"_s);
    EXPECT_EQ(UsageAnalyticsService::standardRetentionMonths, 12);
}

TEST_F(UsageAnalyticsServiceTest, RecordedEventsAreStoredInTheirOrderAndLoadedAgain)
{
    UsageEvent first = eventAt(now);
    first.slotIndex = 4;
    first.targetBundleIdentifier = u"org.example.Editor"_s;
    first.targetAppName = u"Editor \"é\""_s;
    const UsageEvent second = eventAt(Date{now.secondsSinceReferenceDate - 60});
    {
        UsageAnalyticsService service = this->service();
        service.record(first);
        EXPECT_EQ(stored(), QList<UsageEvent>{first});
        service.record(second);
    }
    EXPECT_EQ(stored(), QList<UsageEvent>({first, second}));
    UsageAnalyticsService service = this->service();
    EXPECT_EQ(recordingsOf(service), 2);
    const UsageEvent third = eventAt(now);
    service.record(third);
    EXPECT_EQ(stored(), QList<UsageEvent>({first, second, third}));
}

TEST_F(UsageAnalyticsServiceTest, AnEventAtTheCutoffStaysAndOneASecondEarlierIsDropped)
{
    const UsageEvent atCutoff = eventAt(cutoff);
    store({eventAt(justBeforeCutoff), atCutoff});
    UsageAnalyticsService service = this->service();
    EXPECT_EQ(stored(), QList<UsageEvent>{atCutoff}) << "what was dropped is not kept on disk";
    EXPECT_EQ(recordingsOf(service), 1);
}

TEST_F(UsageAnalyticsServiceTest, EventsAgeWhileTheServiceLives)
{
    UsageAnalyticsService service = this->service();
    service.record(eventAt(cutoff));
    now.secondsSinceReferenceDate += 1;
    const UsageEvent fresh = eventAt(now);
    service.record(fresh);
    EXPECT_EQ(stored(), QList<UsageEvent>{fresh});
}

TEST_F(UsageAnalyticsServiceTest, AnEventOlderThanTheRetentionIsNotKeptButTheDocumentIsWritten)
{
    UsageAnalyticsService service = this->service();
    service.record(eventAt(date("2023-01-31T12:00:00Z")));
    EXPECT_EQ(defaults.stored(key), QByteArray("[]"));
    EXPECT_EQ(recordingsOf(service), 0);
}

TEST_F(UsageAnalyticsServiceTest, RefreshingWritesOnlyWhenAnEventIsOld)
{
    const UsageEvent kept = eventAt(now);
    UsageAnalyticsService service = this->service();
    service.record(eventAt(cutoff));
    service.record(kept);
    defaults.put(key, "untouched");
    service.refreshRetention();
    EXPECT_EQ(defaults.stored(key), QByteArray("untouched"));

    now.secondsSinceReferenceDate += 1;
    service.refreshRetention();
    EXPECT_EQ(stored(), QList<UsageEvent>{kept});
}

TEST_F(UsageAnalyticsServiceTest, ADocumentThatKeepsAllItsEventsIsNotRewrittenOnLoading)
{
    const QByteArray document = " " + UsageLog({eventAt(now)}).json();
    defaults.put(key, document);
    service();
    EXPECT_EQ(defaults.stored(key), document);
}

TEST_F(UsageAnalyticsServiceTest, TheRetentionIsCountedInCalendarMonths)
{
    now = date("2024-03-31T10:00:00Z");
    const UsageEvent kept = eventAt(date("2024-02-29T11:00:00Z")); // 12:00 in winter time
    store({eventAt(date("2024-02-29T10:59:59Z")), kept});
    service(1);
    EXPECT_EQ(stored(), QList<UsageEvent>{kept});
}

TEST_F(UsageAnalyticsServiceTest, ARetentionThatNoCalendarCountsKeepsEverything)
{
    const UsageEvent ancient = eventAt(Date{-1e10});
    for (const int months : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        service(months).record(ancient);
    EXPECT_EQ(stored(), QList<UsageEvent>({ancient, ancient}));
}

TEST_F(UsageAnalyticsServiceTest, OneEventWithoutWordCountMakesTheWholeLogEmpty)
{
    QByteArray damaged = UsageLog({eventAt(now), eventAt(now)}).json();
    damaged.replace(damaged.lastIndexOf("wordCount"), 9, "wordcount");
    defaults.put(key, damaged);
    UsageAnalyticsService service = this->service();
    EXPECT_EQ(recordingsOf(service), 0);
    EXPECT_EQ(defaults.stored(key), damaged) << "it stays until the next write";
}

TEST_F(UsageAnalyticsServiceTest, DamagedBytesAreSetAsideOnceBeforeTheyAreReplaced)
{
    defaults.put(key, "damaged");
    UsageAnalyticsService service = this->service();
    service.record(eventAt(now));
    service.record(eventAt(now));
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{"damaged"});
    EXPECT_EQ(stored().size(), 2);
}

TEST_F(UsageAnalyticsServiceTest, DamagedBytesThatCannotBeSetAsideAreNotReplaced)
{
    defaults.put(key, "damaged");
    UsageAnalyticsService service = this->service();
    defaults.failWriting(true);
    service.record(eventAt(now));
    EXPECT_EQ(defaults.stored(key), QByteArray("damaged"));

    defaults.failWriting(false);
    service.record(eventAt(now));
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{"damaged"});
    EXPECT_EQ(stored().size(), 2);
}

TEST_F(UsageAnalyticsServiceTest, AnEventThatCouldNotBeStoredIsStoredWithTheNext)
{
    UsageAnalyticsService service = this->service();
    service.record(eventAt(now));
    const QByteArray before = *defaults.stored(key);
    defaults.failWriting(true);
    service.record(eventAt(now));
    EXPECT_EQ(defaults.stored(key), before);
    EXPECT_EQ(recordingsOf(service), 2);

    defaults.failWriting(false);
    service.record(eventAt(now));
    EXPECT_EQ(stored().size(), 3);
}

TEST_F(UsageAnalyticsServiceTest, ALogThatCannotBeReadIsSetAsideBeforeItIsReplaced)
{
    store({eventAt(now)});
    const QByteArray before = *defaults.stored(key);
    defaults.failReading(true);
    UsageAnalyticsService service = this->service();
    EXPECT_EQ(recordingsOf(service), 0);
    service.record(eventAt(now));
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{before});
    EXPECT_EQ(stored().size(), 1);
}

TEST_F(UsageAnalyticsServiceTest, ALogThatCanBeReadLaterGetsWhatWasRecordedMeanwhile)
{
    const UsageEvent old = eventAt(now);
    store({old});
    defaults.failReading(true);
    UsageAnalyticsService service = this->service();
    defaults.failReading(false);
    const UsageEvent fresh = eventAt(now);
    service.record(fresh);
    EXPECT_EQ(stored(), QList<UsageEvent>({old, fresh}));
    EXPECT_EQ(recordingsOf(service), 2);
    EXPECT_TRUE(defaults.keptAside(key).isEmpty());
}

TEST_F(UsageAnalyticsServiceTest, WhatAnotherProgramStoredIsTakenInOnce)
{
    UsageAnalyticsService service = this->service();
    const UsageEvent first = eventAt(now);
    service.record(first);
    const UsageEvent theirs = eventAt(now);
    store({eventAt(justBeforeCutoff), theirs});
    const UsageEvent second = eventAt(now);
    service.record(second);
    EXPECT_EQ(stored(), QList<UsageEvent>({theirs, first, second}));
    const UsageEvent third = eventAt(now);
    service.record(third);
    EXPECT_EQ(stored(), QList<UsageEvent>({theirs, first, second, third}));
    EXPECT_TRUE(defaults.keptAside(key).isEmpty());
}

TEST_F(UsageAnalyticsServiceTest, DamageByAnotherProgramIsSetAside)
{
    UsageAnalyticsService service = this->service();
    service.record(eventAt(now));
    defaults.put(key, "damaged");
    service.record(eventAt(now));
    EXPECT_EQ(stored().size(), 2);
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{"damaged"});
}

TEST_F(UsageAnalyticsServiceTest, ALogIsSetAsideBeforeAClockThatIsAheadEmptiesIt)
{
    const QList<UsageEvent> events{eventAt(now), eventAt(now), eventAt(now)};
    store(events);
    const QByteArray before = *defaults.stored(key);
    now.secondsSinceReferenceDate += 400 * 86400.0;
    service().record(eventAt(now));
    EXPECT_EQ(stored().size(), 1);
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{before});
}

TEST_F(UsageAnalyticsServiceTest, ALogThatCannotBeSetAsideIsNotEmptied)
{
    store({eventAt(now)});
    const QByteArray before = *defaults.stored(key);
    now.secondsSinceReferenceDate += 400 * 86400.0;
    defaults.failWriting(true);
    UsageAnalyticsService service = this->service();
    EXPECT_EQ(defaults.stored(key), before);
    defaults.failWriting(false);
    service.record(eventAt(now));
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{before});
    EXPECT_EQ(stored().size(), 1);
}

TEST_F(UsageAnalyticsServiceTest, AnEventWithANumberThatJsonCannotHoldChangesNothing)
{
    UsageAnalyticsService service = this->service();
    service.record(eventAt(now));
    const QByteArray before = *defaults.stored(key);
    UsageEvent endless = eventAt(now);
    endless.durationMinutes = std::numeric_limits<double>::infinity();
    service.record(endless);
    service.record(eventAt(Date{std::numeric_limits<double>::quiet_NaN()}));
    EXPECT_EQ(defaults.stored(key), before);
    EXPECT_EQ(recordingsOf(service), 1);
}

TEST_F(UsageAnalyticsServiceTest, TheDashboardAndTheTrendShowTheLog)
{
    const QList<UsageEvent> events{eventAt(cutoff), eventAt(now)};
    store(events);
    UsageAnalyticsService service = this->service();
    const StraightforwardUsage expected(events, calendar);
    const Date later{now.secondsSinceReferenceDate + 1};
    EXPECT_EQ(service.dashboardSnapshot(later), expected.snapshot(later));
    EXPECT_EQ(service.dashboardSnapshot(later).thisHour.recordings, 1);
    for (const UsageTrendPeriod period : allCases<UsageTrendPeriod>())
        EXPECT_EQ(service.trendBuckets(period, later), expected.buckets(period, later));
}

class UsageStoredLater : public UsageAnalyticsServiceTest
{
protected:
    UsageAnalyticsService slowService()
    {
        return {defaults, later, key, 12, calendar, [this] { return now; }};
    }

    ManualExecutor later;
};

TEST_F(UsageStoredLater, EventsCountAtOnceAndAreStoredTogether)
{
    const UsageEvent old = eventAt(now);
    store({old});
    UsageAnalyticsService service = slowService();
    const int before = defaults.writeCount();
    const QList<UsageEvent> fresh{eventAt(now), eventAt(now), eventAt(now)};
    for (const UsageEvent &event : fresh)
        service.record(event);
    EXPECT_EQ(recordingsOf(service), 4);
    EXPECT_EQ(stored(), QList<UsageEvent>{old});
    later.runAll();
    EXPECT_EQ(stored(), QList<UsageEvent>{old} + fresh);
    EXPECT_EQ(defaults.writeCount(), before + 1);
    EXPECT_EQ(recordingsOf(service), 4);
}

TEST_F(UsageStoredLater, WhatTheDocumentHasForEachEventStaysAsItIs)
{
    const QByteArray foreign = R"( [ { "later": [1, {}], "timestamp": 733575600, "wordCount": 1.0e0,
        "durationMinutes": 0.5, "id": "6f9619ff-8b86-d011-b42d-00c04fc964ff" } ] )";
    defaults.put(key, foreign);
    UsageAnalyticsService service = slowService();
    service.record(eventAt(cutoff));
    later.runAll();
    service.record(eventAt(cutoff));
    later.runAll();
    EXPECT_EQ(stored().size(), 3);
    const QByteArray text = foreign.sliced(3, foreign.lastIndexOf('}') - 2);
    EXPECT_TRUE(defaults.stored(key)->contains(text));

    now.secondsSinceReferenceDate += 1;
    service.refreshRetention();
    later.runAll();
    EXPECT_EQ(defaults.stored(key), '[' + text + ']');
}

TEST_F(UsageStoredLater, EventsThatAnotherProgramStoresMeanwhileAreTakenInWhenOursAreStored)
{
    UsageAnalyticsService service = slowService();
    const UsageEvent first = eventAt(now);
    service.record(first);
    const UsageEvent theirs = eventAt(now);
    store({eventAt(justBeforeCutoff), theirs});
    EXPECT_EQ(recordingsOf(service), 1);
    later.runAll();
    EXPECT_EQ(stored(), QList<UsageEvent>({theirs, first}));
    EXPECT_EQ(recordingsOf(service), 2);
    EXPECT_TRUE(defaults.keptAside(key).isEmpty());
}

TEST_F(UsageStoredLater, ALogThatCannotBeStoredIsStoredWholeTheNextTime)
{
    UsageAnalyticsService service = slowService();
    const QList<UsageEvent> events{eventAt(now), eventAt(now), eventAt(now), eventAt(now)};
    service.record(events[0]);
    later.runAll();
    defaults.failWriting(true);
    service.record(events[1]);
    later.runAll();
    service.record(events[2]);
    later.runAll();
    EXPECT_EQ(stored(), QList<UsageEvent>{events[0]});
    defaults.failWriting(false);
    service.record(events[3]);
    later.runAll();
    EXPECT_EQ(stored(), events);
}

TEST_F(UsageStoredLater, AClockThatIsAheadForAMomentStillSetsTheLogAside)
{
    store({eventAt(now)});
    const QByteArray before = *defaults.stored(key);
    now.secondsSinceReferenceDate += 400 * 86400.0;
    UsageAnalyticsService service = slowService();
    service.record(eventAt(now));
    later.runAll();
    EXPECT_EQ(defaults.keptAside(key), QList<QByteArray>{before});
    EXPECT_EQ(stored().size(), 1);
}

TEST_F(UsageAnalyticsServiceTest, WithoutAClockTheWallClockIsRead)
{
    const double before = double(QDateTime::currentMSecsSinceEpoch() - 1) / 1000;
    const double wallClock = UsageAnalyticsService::wallClockNow().unixTime();
    EXPECT_GE(wallClock, before);
    EXPECT_LE(wallClock, double(QDateTime::currentMSecsSinceEpoch() + 1) / 1000);

    const UsageEvent fresh = eventAt(UsageAnalyticsService::wallClockNow());
    store({eventAt(Date{fresh.timestamp.secondsSinceReferenceDate - 400 * 86400.0}), fresh});
    UsageAnalyticsService(defaults, storage, key, 12, calendar);
    EXPECT_EQ(stored(), QList<UsageEvent>{fresh});
}

} // namespace
} // namespace kestrova
