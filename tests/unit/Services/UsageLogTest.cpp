#include "Services/Usage/UsageLog.h"
#include "Models/Usage/UsageEventsJson.h"
#include "Services/StraightforwardUsage.h"
#include "Services/Usage/CompactUsageLog.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <gtest/gtest.h>

#include <random>

namespace kestrova {
namespace {

UsageLog logAt(std::initializer_list<double> timestamps)
{
    UsageLog log;
    for (const double timestamp : timestamps)
        log.append(eventAt(Date{timestamp}));
    return log;
}

void expectTimestamps(const UsageLog &log, std::initializer_list<double> timestamps)
{
    ASSERT_EQ(log.events().size(), qsizetype(timestamps.size()));
    auto event = log.events().begin();
    for (const double timestamp : timestamps)
        EXPECT_EQ((event++)->timestamp, Date{timestamp});
    EXPECT_EQ(usageEventsFromJson(log.json()), log.events());
}

TEST(UsageLog, AnEmptyLogIsAnEmptyArray)
{
    EXPECT_EQ(UsageLog().json(), "[]");
    EXPECT_EQ(UsageLog(QList<UsageEvent>()).json(), "[]");
}

TEST(UsageLog, AppendingIsTheSameAsEncodingAnew)
{
    const UsageLog log = logAt({1, 2, 2, -5});
    expectTimestamps(log, {1, 2, 2, -5});
    EXPECT_EQ(UsageLog(log.events()).json(), log.json());
}

TEST(UsageLog, MissingEventsOfAnotherLogAreAppended)
{
    UsageLog log = logAt({1, 2});
    CompactUsageLog other(log.events());
    other.append(eventAt(Date{0}));
    other.append(eventAt(Date{5}));
    log.addMissing(other);
    expectTimestamps(log, {1, 2, 0, 5});
    EXPECT_EQ(log.events(), other.events());
    log.addMissing(other);
    expectTimestamps(log, {1, 2, 0, 5});
    log.dropBefore(Date{1});
    expectTimestamps(log, {1, 2, 5});
}

TEST(UsageLog, EventsAreAppendedToADocumentAsToALog)
{
    const UsageEvent first = eventAt(Date{5});
    const UsageEvent second = eventAt(Date{6});
    QByteArray text;
    appendJson(eventAt(Date{3}), text);
    for (const QByteArray &document : {QByteArray("[]"), QByteArray("\xef\xbb\xbf [\r\n]\n"),
                                       '[' + text + ']', " [ " + text + ",\t" + text + " ] \r\n"}) {
        QByteArray extended = document;
        UsageLog::appendTo(extended, {first, second});
        EXPECT_TRUE(extended.startsWith(document.first(document.lastIndexOf(']'))));
        UsageLog log = UsageLog::fromJson(document);
        log.append(first);
        log.append(second);
        EXPECT_EQ(UsageLog::fromJson(extended).json(), log.json());
    }
}

TEST(UsageLog, WhatADocumentHasForEachEventStaysAsItIs)
{
    const QByteArray first = R"({ "later": [1, {}], "timestamp": 5, "wordCount": 1.0e0,
        "durationMinutes": 0.5, "id": "6f9619ff-8b86-d011-b42d-00c04fc964ff" })";
    QByteArray second;
    appendJson(eventAt(Date{3}), second);
    UsageLog log = UsageLog::fromJson(" [ " + first + " ,\n" + second + "]\n");
    EXPECT_EQ(log.json(), '[' + first + ',' + second + ']');
    expectTimestamps(log, {5, 3});

    log.append(eventAt(Date{7}));
    log.dropBefore(Date{4});
    expectTimestamps(log, {5, 7});
    EXPECT_TRUE(log.json().startsWith('[' + first + ','));
    log.dropBefore(Date{6});
    expectTimestamps(log, {7});

    EXPECT_EQ(UsageLog::fromJson(" [ ] ").json(), "[]");
    EXPECT_THROW(UsageLog::fromJson('[' + second), JsonDecodingError);
}

TEST(UsageLog, ACopyKeepsItsFormWhenTheOtherGrows)
{
    UsageLog log = logAt({1});
    const UsageLog copy = log;
    log.append(eventAt(Date{2}));
    expectTimestamps(copy, {1});
    expectTimestamps(log, {1, 2});
}

/// What holds for a log in either form.
template <typename Log>
class UsageLogRetention : public testing::Test
{
protected:
    static Log logAt(std::initializer_list<double> timestamps)
    {
        Log log;
        for (const double timestamp : timestamps)
            log.append(eventAt(Date{timestamp}));
        return log;
    }
    static QList<UsageEvent> eventsOf(const UsageLog &log)
    {
        EXPECT_EQ(log.json(), UsageLog(log.events()).json());
        return log.events();
    }
    static QList<UsageEvent> eventsOf(const CompactUsageLog &log) { return log.events(); }
    static void expectTimestamps(const Log &log, const QList<double> &expected)
    {
        QList<double> timestamps;
        for (const UsageEvent &event : eventsOf(log))
            timestamps.append(event.timestamp.secondsSinceReferenceDate);
        EXPECT_EQ(timestamps, expected);
    }
};
using UsageLogForms = testing::Types<UsageLog, CompactUsageLog>;
TYPED_TEST_SUITE(UsageLogRetention, UsageLogForms, );

TYPED_TEST(UsageLogRetention, EventsBeforeTheCutoffAreDroppedAndThoseAtItStay)
{
    TypeParam log = this->logAt({1, 2, 3, 3, 4});
    EXPECT_FALSE(log.dropBefore(Date{1}));
    this->expectTimestamps(log, {1, 2, 3, 3, 4});
    EXPECT_TRUE(log.dropBefore(Date{3}));
    this->expectTimestamps(log, {3, 3, 4});
    log.append(eventAt(Date{5}));
    this->expectTimestamps(log, {3, 3, 4, 5});
    EXPECT_TRUE(log.dropBefore(Date{6}));
    this->expectTimestamps(log, {});
    EXPECT_FALSE(log.dropBefore(Date{6}));
    log.append(eventAt(Date{1}));
    this->expectTimestamps(log, {1});
}

TYPED_TEST(UsageLogRetention, EventsOutOfOrderAreDroppedWhereverTheyStand)
{
    TypeParam log = this->logAt({5, 1, 6, 2, 7});
    EXPECT_TRUE(log.dropBefore(Date{3}));
    this->expectTimestamps(log, {5, 6, 7});
    EXPECT_TRUE(this->logAt({5, 1}).dropBefore(Date{3}));
}

TYPED_TEST(UsageLogRetention, AnyHistoryKeepsWhatPlainFilteringKeeps)
{
    std::minstd_rand random(1);
    const Calendar calendar(QTimeZone::utc(), Qt::Monday, QLocale::c());
    for (const unsigned disorder : {0U, 3U, 40U}) {
        TypeParam log;
        QList<UsageEvent> expected;
        for (int step = 0; step < 300; ++step) {
            const auto event = eventAt(Date{double(step) - double(random() % (disorder + 1))});
            log.append(event);
            expected.append(event);
            const Date cutoff{double(step) - double(random() % 60)};
            const auto kept = StraightforwardUsage(expected, calendar).keptSince(cutoff);
            ASSERT_EQ(log.dropBefore(cutoff), kept != expected);
            expected = kept;
            ASSERT_EQ(this->eventsOf(log), expected);
        }
    }
}

} // namespace
} // namespace kestrova
