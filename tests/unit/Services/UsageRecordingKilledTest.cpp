#include "Models/UsageEventsJson.h"
#include "Platform/Linux/FileUserDefaults.h"
#include "Services/UsageAnalyticsService.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

const Calendar calendar(QTimeZone::utc(), Qt::Monday, QLocale::c());
const QString key = UsageAnalyticsService::standardKey();

/// Records events numbered by their word counts, and writes a byte to the pipe after each.
[[noreturn]] void recordForEver(FileUserDefaults &defaults, qint64 firstNumber, int pipe)
{
    UsageAnalyticsService service(defaults, key, 12, calendar, [] { return Date{0}; });
    for (qint64 number = firstNumber;; ++number) {
        service.record(eventAt(Date{0}, number));
        if (write(pipe, "", 1) != 1)
            _exit(1);
    }
}

qint64 bytesIn(int pipe)
{
    char bytes[4096];
    qint64 total = 0;
    for (ssize_t count = 0; (count = read(pipe, bytes, sizeof bytes)) > 0;)
        total += count;
    return total;
}

TEST(UsageRecording, ARecorderKilledAtAnyMomentLosesNoEventAndLeavesAReadableLog)
{
    const QTemporaryDir folder;
    FileUserDefaults defaults(folder.path());
    std::minstd_rand random(1);
    qint64 confirmed = 0;
    qint64 stored = 0;
    for (int round = 0; round < 200; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0)
            recordForEver(defaults, stored, ends[1]);
        close(ends[1]);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 12'000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        const qint64 recorded = bytesIn(ends[0]);
        close(ends[0]);
        confirmed += recorded;

        const auto document = defaults.data(key);
        const auto events = document ? usageEventsFromJson(*document) : QList<UsageEvent>();
        ASSERT_GE(events.size(), stored + recorded);
        ASSERT_LE(events.size(), stored + recorded + 1) << "one may be stored but not confirmed";
        stored = events.size();
        for (qint64 i = 0; i < stored; ++i)
            ASSERT_EQ(events[i].wordCount, i);
    }
    EXPECT_GT(confirmed, 0) << "the recorder was never fast enough to be interrupted";
    EXPECT_TRUE(QDir(folder.path()).entryList({u"*damaged*"_s}).isEmpty());
}

} // namespace
} // namespace kestrova
