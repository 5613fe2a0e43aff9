#include "Concurrency/BackgroundExecutor.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Services/Usage/UsageAnalyticsService.h"
#include "support/KilledWriter.h"
#include "support/UsageEvents.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(UsageRecording, ARecorderKilledAtAnyMomentLosesNoEventAndLeavesAReadableLog)
{
    const QTemporaryDir folder;
    FileUserDefaults defaults(folder.path());
    const QString key = UsageAnalyticsService::standardKey();
    const Calendar calendar(QTimeZone::utc(), Qt::Monday, QLocale::c());
    const qint64 longestLife = 4 * durationOf([&] { defaults.setData(u"measured"_s, "[]"); });
    std::minstd_rand random(1);
    qint64 confirmed = 0;
    qint64 stored = 0;
    for (int round = 0; round < 200; ++round) {
        // The word counts number the events.
        const auto recorded = writesUntilKilled(
            [&](const auto &confirm) {
                BackgroundExecutor storage(1);
                UsageAnalyticsService service(defaults, storage, key, 12, calendar,
                                              [] { return Date{0}; });
                for (qint64 number = stored;; ++number) {
                    service.record(eventAt(Date{0}, number));
                    storage.waitUntilIdle(std::chrono::minutes(1));
                    confirm();
                }
            },
            std::chrono::microseconds(random() % longestLife));
        ASSERT_TRUE(recorded);
        confirmed += *recorded;

        const auto document = defaults.data(key);
        const auto events = document ? usageEventsFromJson(*document) : QList<UsageEvent>();
        ASSERT_GE(events.size(), stored + *recorded);
        ASSERT_LE(events.size(), stored + *recorded + 1) << "one may be stored but not confirmed";
        stored = events.size();
        for (qint64 i = 0; i < stored; ++i)
            ASSERT_EQ(events[i].wordCount, i);
    }
    EXPECT_GT(confirmed, 0) << "the recorder was never fast enough to be interrupted";
    EXPECT_TRUE(QDir(folder.path()).entryList({u"*kept*"_s}).isEmpty());
}

} // namespace
} // namespace kestrova
