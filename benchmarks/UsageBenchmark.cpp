#include "Comparison.h"
#include "Concurrency/BackgroundExecutor.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Services/StraightforwardUsage.h"
#include "Services/Usage/UsageAnalyticsService.h"
#include "Services/Usage/UsageLog.h"

#include <QTemporaryDir>

#include <cstdlib>
#include <stdexcept>

/// A usage log of one year, with 100,000 events or as many as the argument says: ours against the
/// straightforward algorithm over QJsonDocument. The storage keeps nothing; what recording costs
/// the main thread, and what it costs until the file is there with its fsync, is printed beside it.
namespace {

using namespace Qt::StringLiterals;
using namespace kestrova;

constexpr int rounds = 7;
constexpr qsizetype defaultEventCount = 100'000;
constexpr double secondsPerYear = 365 * 86400.0;
const Date now{757'382'400.5};

/// Always holds what it was given at first, and costs nothing.
class VolatileUserDefaults final : public UserDefaults
{
public:
    std::optional<VersionedData> versionedData(const QString &) const override
    {
        return VersionedData{bytes, {}};
    }
    std::optional<DocumentVersion> version(const QString &) const override
    {
        return DocumentVersion{};
    }
    DocumentVersion setData(const QString &, const QByteArray &) override { return {}; }
    void setAside(const QString &) override {}

    QByteArray bytes;
};

UsageEvent eventAt(qsizetype index, qsizetype count)
{
    UsageEvent event;
    event.id = QUuid::createUuid();
    event.timestamp = {now.secondsSinceReferenceDate -
                       secondsPerYear * double(count - index) / double(count + 1)};
    if (index % 3 == 0)
        event.slotIndex = int(index % 9) + 1;
    if (index % 10 != 0) {
        event.targetBundleIdentifier = u"org.example.Application%1"_s.arg(index % 20);
        event.targetAppName = u"Application %1"_s.arg(index % 20);
    }
    event.wordCount = index % 120;
    event.durationMinutes = double(index % 100) / 60;
    return event;
}

QList<UsageEvent> yearOfEvents(qsizetype count)
{
    QList<UsageEvent> events;
    for (qsizetype i = 0; i < count; ++i)
        events.append(eventAt(i, count));
    return events;
}

void requireEqual(bool areEqual)
{
    if (!areEqual)
        throw std::runtime_error("the results differ");
}

} // namespace

int main(int argc, char **argv)
{
    const qsizetype count = argc > 1 ? std::atoll(argv[1]) : defaultEventCount;
    const Calendar calendar(QTimeZone("Europe/Berlin"), Qt::Monday, QLocale::c());
    const QString key = UsageAnalyticsService::standardKey();
    const int months = UsageAnalyticsService::standardRetentionMonths;
    const auto clock = [] { return now; };

    QList<UsageEvent> events = yearOfEvents(count);
    VolatileUserDefaults defaults;
    BackgroundExecutor storage(1);
    defaults.bytes = UsageLog(events).json();
    const Comparison comparison(rounds, double(defaults.bytes.size()) / 1e6);
    std::printf("%lld events, %.1f MB\n", static_cast<long long>(count),
                double(defaults.bytes.size()) / 1e6);

    QList<UsageEvent> theirs;
    std::puts("\nload");
    comparison.run(
        "ours", [&] { UsageAnalyticsService(defaults, storage, key, months, calendar, clock); },
        "QJsonDocument", [&] { theirs = StraightforwardUsage::fromJson(defaults.bytes); });
    requireEqual(theirs == events);

    UsageAnalyticsService service(defaults, storage, key, months, calendar, clock);
    const UsageEvent latest = eventAt(count, count);
    for (const UsageTrendPeriod period : allCases<UsageTrendPeriod>()) {
        std::printf("\nrecord, snapshot, %s\n", rawValue(period).toLatin1().constData());
        comparison.run(
            "ours",
            [&] {
                service.record(latest);
                service.dashboardSnapshot(now);
                service.trendBuckets(period, now);
            },
            "straightforward",
            [&] {
                events.append(latest);
                events = StraightforwardUsage(events, calendar)
                             .keptSince(*calendar.adding(-months, Calendar::Unit::month, now));
                defaults.setData(key, StraightforwardUsage::toJson(events));
                const StraightforwardUsage straightforward(events, calendar);
                straightforward.snapshot(now);
                straightforward.buckets(period, now);
            });
        const StraightforwardUsage straightforward(events, calendar);
        requireEqual(service.dashboardSnapshot(now) == straightforward.snapshot(now));
        requireEqual(service.trendBuckets(period, now) == straightforward.buckets(period, now));
    }

    const QTemporaryDir folder;
    FileUserDefaults files(folder.path());
    files.setData(key, defaults.bytes);
    UsageAnalyticsService durable(files, storage, key, months, calendar, clock);
    std::puts("\nrecord alone");
    comparison.run(
        "main thread", [&] { durable.record(latest); }, "until it is stored",
        [&] {
            durable.record(latest);
            storage.waitUntilIdle(std::chrono::minutes(1));
        });
    Comparison::printPeakMemory();
}
