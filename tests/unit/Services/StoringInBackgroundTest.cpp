#include "Concurrency/BackgroundExecutor.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Platform/Posix/FileUserDefaults.h"
#include "Services/Settings/SettingsStore.h"
#include "Services/Usage/UsageAnalyticsService.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <semaphore>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr auto generous = 60s;

/// A disk that takes as long as it is told to.
class HeldUserDefaults final : public UserDefaults
{
public:
    explicit HeldUserDefaults(UserDefaults &disk) : m_disk(disk) {}

    std::optional<VersionedData> versionedData(const QString &key) const override
    {
        return m_disk.versionedData(key);
    }
    std::optional<DocumentVersion> version(const QString &key) const override
    {
        return m_disk.version(key);
    }
    DocumentVersion setData(const QString &key, const QByteArray &bytes) override
    {
        writesBegun.release();
        writesAllowed.acquire();
        return m_disk.setData(key, bytes);
    }
    void setAside(const QString &key) override { m_disk.setAside(key); }

    std::counting_semaphore<> writesBegun{0};
    std::counting_semaphore<> writesAllowed{0};

private:
    UserDefaults &m_disk;
};

class StoringInBackground : public testing::Test
{
protected:
    qint64 storedRecordings()
    {
        return usageEventsFromJson(*defaults.data(UsageAnalyticsService::standardKey())).size();
    }

    const QTemporaryDir folder;
    FileUserDefaults defaults{folder.path()};
    BackgroundExecutor storage{2};
    const Calendar calendar{QTimeZone::utc(), Qt::Monday, QLocale::c()};
    const UsageAnalyticsService::NowProvider clock = [] { return Date{757'382'400}; };
};

TEST_F(StoringInBackground, ReadersOnOtherThreadsSeeEachSavedRecordAtOnceAndTheLastIsStored)
{
    SettingsStore store(defaults, storage);
    store.loadToEdit();
    std::atomic<qint64> saved = 0;
    std::atomic<bool> isStale = false;
    {
        const std::jthread reader([&](const std::stop_token &stop) {
            while (!stop.stop_requested()) {
                const qint64 before = saved;
                if (store.load().modelSHA256.toLongLong() < before)
                    isStale = true;
            }
        });
        AppSettings settings = AppSettings::defaults();
        for (qint64 number = 1; number <= 300; ++number) {
            settings.modelSHA256 = QString::number(number);
            store.save(settings);
            saved = number;
            if (number % 30 == 0)
                std::this_thread::sleep_for(1ms);
        }
    }
    EXPECT_FALSE(isStale);
    ASSERT_TRUE(storage.waitUntilIdle(generous));
    EXPECT_EQ(AppSettings::fromJson(*defaults.data(SettingsStore::key())).modelSHA256, u"300"_s);
}

TEST_F(StoringInBackground, NoChangeOfSettingsWaitsForTheDisk)
{
    HeldUserDefaults disk(defaults);
    SettingsStore store(disk, storage);
    AppSettings settings = store.loadToEdit();
    settings.transcriptionLanguage = u"de"_s;
    store.save(settings);
    disk.writesBegun.acquire();
    auto edited = std::async(std::launch::async, [&store] {
        AppSettings next = store.loadToEdit();
        next.modelSHA256 = u"1"_s;
        store.save(next);
    });
    EXPECT_EQ(edited.wait_for(5s), std::future_status::ready);
    disk.writesAllowed.release(2);
    edited.wait();
    ASSERT_TRUE(storage.waitUntilIdle(generous));
    const AppSettings stored = AppSettings::fromJson(*defaults.data(SettingsStore::key()));
    EXPECT_EQ(stored.transcriptionLanguage, u"de"_s);
    EXPECT_EQ(stored.modelSHA256, u"1"_s);
}

TEST_F(StoringInBackground, EventsThatAreRecordedWhileOthersAreStoredAreStoredToo)
{
    UsageAnalyticsService service(defaults, storage, UsageAnalyticsService::standardKey(), 12,
                                  calendar, clock);
    for (int number = 1; number <= 500; ++number) {
        service.record(eventAt(clock()));
        ASSERT_EQ(service.dashboardSnapshot(Date{}).topApplications.first().recordings, number);
    }
    ASSERT_TRUE(storage.waitUntilIdle(generous));
    EXPECT_EQ(storedRecordings(), 500);
}

TEST_F(StoringInBackground, TwoProgramsThatRecordAtOnceKeepTheirOwnEvents)
{
    FileUserDefaults otherDefaults(folder.path());
    UsageAnalyticsService service(defaults, storage, UsageAnalyticsService::standardKey(), 12,
                                  calendar, clock);
    const UsageEvent theirs = eventAt(clock());
    service.record(eventAt(clock()));
    ASSERT_TRUE(storage.waitUntilIdle(generous));
    {
        UsageAnalyticsService other(otherDefaults, storage, UsageAnalyticsService::standardKey(),
                                    12, calendar, clock);
        other.record(theirs);
        ASSERT_TRUE(storage.waitUntilIdle(generous));
    }
    for (int i = 0; i < 100; ++i)
        service.record(eventAt(clock()));
    ASSERT_TRUE(storage.waitUntilIdle(generous));
    EXPECT_EQ(storedRecordings(), 102);
    EXPECT_EQ(service.dashboardSnapshot(Date{}).topApplications.first().recordings, 102);
}

TEST_F(StoringInBackground, WhatIsToBeStoredOutlivesItsOwner)
{
    {
        SettingsStore store(defaults, storage);
        AppSettings settings = AppSettings::defaults();
        settings.theme = AppTheme::dark;
        UsageAnalyticsService service(defaults, storage, UsageAnalyticsService::standardKey(), 12,
                                      calendar, clock);
        store.save(settings);
        service.record(eventAt(clock()));
    }
    ASSERT_TRUE(storage.waitUntilIdle(generous));
    EXPECT_EQ(storedRecordings(), 1);
    EXPECT_EQ(AppSettings::fromJson(*defaults.data(SettingsStore::key())).theme, AppTheme::dark);
}

} // namespace
} // namespace kestrova
