#include "Models/Usage/UsageEventsJson.h"
#include "Models/Json/JsonObjectReader.h"
#include "support/QtPrinting.h"
#include "support/UsageEvents.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr auto idText = "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0";
constexpr auto requiredMembers = R"("id":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0",)"
                                 R"("timestamp":1.5,"wordCount":3,"durationMinutes":0.25)";

UsageEvent plainEvent()
{
    UsageEvent event;
    event.id = QUuid(QLatin1String(idText));
    event.timestamp = {1.5};
    event.wordCount = 3;
    event.durationMinutes = 0.25;
    return event;
}

QByteArray logWith(const QByteArray &members)
{
    return "[{" + members + "}]";
}

QByteArray logWithout(const QByteArray &member)
{
    return logWith(requiredMembers).replace(member, "\"unknown\":0");
}

QByteArray jsonOf(const UsageEvent &event)
{
    QByteArray json;
    appendJson(event, json);
    return json;
}

TEST(UsageEventsJson, AnEventWithoutSlotAndTargetLeavesTheirKeysOut)
{
    EXPECT_EQ(jsonOf(plainEvent()), "{" + QByteArray(requiredMembers) + "}");
}

TEST(UsageEventsJson, OptionalFieldsStandUnderTheirNames)
{
    UsageEvent event = plainEvent();
    event.slotIndex = 2;
    event.targetBundleIdentifier = u"org.example.Editor"_s;
    event.targetAppName = u""_s;
    const QJsonObject object = QJsonDocument::fromJson(jsonOf(event)).object();
    EXPECT_EQ(object.size(), 7);
    EXPECT_EQ(object.value("id"_L1).toString(), QLatin1String(idText));
    EXPECT_EQ(object.value("slotIndex"_L1), QJsonValue(2));
    EXPECT_EQ(object.value("targetBundleIdentifier"_L1), QJsonValue(u"org.example.Editor"_s));
    EXPECT_EQ(object.value("targetAppName"_L1), QJsonValue(u""_s));
}

TEST(UsageEventsJson, NumbersAreWrittenShortest)
{
    const auto timestampText = [](double seconds) {
        UsageEvent event = plainEvent();
        event.timestamp = {seconds};
        const QByteArray json = jsonOf(event);
        const qsizetype begin = json.indexOf("\"timestamp\":") + 12;
        return json.mid(begin, json.indexOf(',', begin) - begin);
    };
    EXPECT_EQ(timestampText(0), "0");
    EXPECT_EQ(timestampText(-0.0), "-0");
    EXPECT_EQ(timestampText(757382400), "757382400");
    EXPECT_EQ(timestampText(757382400.12345695), "757382400.123457");
    EXPECT_EQ(timestampText(0.1), "0.1");
    EXPECT_EQ(timestampText(1.0 / 60), "0.016666666666666666");
    EXPECT_EQ(timestampText(1e22), "1e+22");
    EXPECT_EQ(timestampText(-63114076800.5), "-63114076800.5");
    EXPECT_EQ(timestampText(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
    EXPECT_EQ(timestampText(std::numeric_limits<double>::denorm_min()), "5e-324");
}

TEST(UsageEventsJson, TextsAreWrittenInUtf8WithTheFewestEscapes)
{
    UsageEvent event = plainEvent();
    event.targetAppName = u"\"a\\b/c\" é日本😀 \x7f"_s + QChar(0xD83D);
    EXPECT_TRUE(
        jsonOf(event).contains(QByteArray(R"("targetAppName":"\"a\\b/c\" é日本😀 )") + "\x7f?\""))
        << jsonOf(event).toStdString();
    event.targetAppName = u"\x01\x1f\b\f\n\r\t"_s + QChar(0);
    EXPECT_TRUE(jsonOf(event).contains(R"("\u0001\u001F\b\f\n\r\t\u0000")"))
        << jsonOf(event).toStdString();
}

TEST(UsageEventsJson, AnEmptyArrayIsAnEmptyLog)
{
    EXPECT_TRUE(usageEventsFromJson("[]").isEmpty());
    EXPECT_TRUE(usageEventsFromJson(" [ \n\r\t] \n").isEmpty());
}

TEST(UsageEventsJson, AnyKeyOrderWhiteSpaceAndUnknownKeysAreRead)
{
    const auto events = usageEventsFromJson(R"( [ {
        "durationMinutes" : 0.25, "extra": {"a":[1,-2.5e3,{"id":"x"},[],{}],"b":null,"c":true},
        "wordCount" : 3.0, "t\u0069mestamp" : 15e-1, "false": false, "text":"\"}],[{",
        "id" : "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0" } ,
        {"id":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0","slotIndex":null,"targetAppName":null,
         "targetBundleIdentifier":null,"timestamp":1.5,"wordCount":3,"durationMinutes":25e-2}
        ] )");
    EXPECT_EQ(events, QList<UsageEvent>({plainEvent(), plainEvent()}));
}

TEST(UsageEventsJson, EscapedCharactersAreRead)
{
    const auto events = usageEventsFromJson(logWith(
        QByteArray(requiredMembers) +
        R"(,"targetAppName":"\"\\\/\b\f\n\r\t\u00e9\ud83d\uDE00é😀","targetBundleIdentifier":"\u0000")"));
    EXPECT_EQ(events.first().targetAppName, u"\"\\/\b\f\n\r\té😀é😀"_s);
    EXPECT_EQ(events.first().targetBundleIdentifier, QString(QChar(0)));
}

TEST(UsageEventsJson, OfARepeatedKeyTheLastCounts)
{
    const auto events =
        usageEventsFromJson(logWith(QByteArray(requiredMembers) + R"(,"wordCount":4)"));
    EXPECT_EQ(events.first().wordCount, 4);
}

TEST(UsageEventsJson, NumbersLoadExactly)
{
    const auto timestampOf = [](const QByteArray &text) {
        return usageEventsFromJson(logWith(QByteArray(requiredMembers).replace("1.5", text)))
            .first()
            .timestamp.secondsSinceReferenceDate;
    };
    EXPECT_EQ(timestampOf("757382400.12345678"), 757382400.12345678);
    EXPECT_EQ(timestampOf("-978307200.0625"), -978307200.0625);
    EXPECT_EQ(timestampOf("-63114076800"), -63114076800.0);
    EXPECT_EQ(timestampOf("253402300799.999"), 253402300799.999);
    EXPECT_EQ(timestampOf("1.7976931348623157E+308"), std::numeric_limits<double>::max());
    EXPECT_EQ(timestampOf("0.1e0"), 0.1);
    EXPECT_EQ(timestampOf("-0"), 0);

    const auto wordsOf = [](const QByteArray &text) {
        return usageEventsFromJson(
                   logWith(QByteArray(requiredMembers)
                               .replace("\"wordCount\":3", "\"wordCount\":" + text)))
            .first()
            .wordCount;
    };
    EXPECT_EQ(wordsOf("9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(wordsOf("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(wordsOf("9007199254740993"), 9007199254740993);
    EXPECT_EQ(wordsOf("1.2e3"), 1200);
}

TEST(UsageEventsJson, EveryKindOfDamageRefusesTheWholeDocument)
{
    const QByteArray good = logWith(requiredMembers);
    ASSERT_EQ(usageEventsFromJson(good).size(), 1);
    const auto withId = [&](const QByteArray &id) { return QByteArray(good).replace(idText, id); };
    const auto withTimestamp = [&](const QByteArray &text) {
        return QByteArray(good).replace("1.5", text);
    };
    const auto withMember = [](const QByteArray &member) {
        return logWith(QByteArray(requiredMembers) + "," + member);
    };
    const QByteArray documents[] = {
        "",
        " ",
        "null",
        "{}",
        "[",
        "[null]",
        "[1]",
        "[[]]",
        "[{}]",
        good + "x",
        good + good,
        QByteArray(1, 0) + good,
        QByteArray(good).replace("}]", "},]"),
        QByteArray(good).replace("}]", ",}]"),
        QByteArray(good).replace("}]", "} {}]"),
        QByteArray(good).replace("[{", "[,{"),
        QByteArray(good).replace(":1.5", " 1.5"),
        QByteArray(good).replace("\"wordCount\"", "wordCount"),
        QByteArray(good).replace("\"wordCount\"", "\"wordcount\""),
        "[" + QByteArray(good).mid(1).chopped(1) + ",{\"id\":1}]",
        logWithout("\"timestamp\":1.5"),
        logWithout("\"wordCount\":3"),
        logWithout("\"durationMinutes\":0.25"),
        logWith("\"timestamp\":1.5,\"wordCount\":3,\"durationMinutes\":0.25"),
        withId(""),
        withId("0F1E2D3C4B5A69788796A5B4C3D2E1F0"),
        withId("{0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0}"),
        withId("0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1FG"),
        withId("0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F"),
        withId("0F1E2D3C-4B5A-6978-87960A5B4C3D2E1F0"),
        withTimestamp("null"),
        withTimestamp("\"1.5\""),
        withTimestamp("\"2024-01-01T00:00:00Z\""),
        withTimestamp("true"),
        withTimestamp("01"),
        withTimestamp("+1"),
        withTimestamp(".5"),
        withTimestamp("1."),
        withTimestamp("1e"),
        withTimestamp("1e+"),
        withTimestamp("-"),
        withTimestamp("0x1"),
        withTimestamp("1e999"),
        withTimestamp("NaN"),
        withTimestamp("Infinity"),
        withTimestamp("inf"),
        QByteArray(good).replace("\"wordCount\":3", "\"wordCount\":3.5"),
        QByteArray(good).replace("\"wordCount\":3", "\"wordCount\":9223372036854775808"),
        QByteArray(good).replace("\"wordCount\":3", "\"wordCount\":\"3\""),
        QByteArray(good).replace("\"wordCount\":3", "\"wordCount\":null"),
        withMember("\"slotIndex\":1.5"),
        withMember("\"slotIndex\":9223372036854775808"),
        withMember("\"slotIndex\":\"1\""),
        withMember("\"targetAppName\":1"),
        withMember("\"targetAppName\":{}"),
        withMember("\"targetAppName\":nul"),
        withMember("\"targetBundleIdentifier\":[]"),
        withMember("\"targetAppName\":\"\n\""),
        withMember("\"targetAppName\":\"\\x\""),
        withMember("\"targetAppName\":\"\\u12\""),
        withMember("\"targetAppName\":\"\\u12G4\""),
        withMember("\"targetAppName\":\"\\ud83d\""),
        withMember("\"targetAppName\":\"\\ud83d\\u0041\""),
        withMember("\"targetAppName\":\"\\ude00\""),
        withMember("\"targetAppName\":\"\xff\""),
        withMember("\"targetAppName\":\"\xed\xa0\x80\""),
        withMember("\"unknown\":tru"),
        withMember("\"unknown\":[1,]"),
        withMember("\"unknown\":{\"a\"}"),
        withMember("\"unknown\":\"\\u\""),
        withMember("\"unknown\":" + QByteArray(100'000, '[')),
    };
    for (const QByteArray &document : documents)
        EXPECT_THROW(usageEventsFromJson(document), JsonDecodingError) << document.toStdString();
    for (qsizetype length = 0; length < good.size(); ++length)
        EXPECT_THROW(usageEventsFromJson(good.first(length)), JsonDecodingError) << length;
}

TEST(UsageEventsJson, WhatIsEncodedLoadsAsTheSameEventAndIsReadByOthers)
{
    std::mt19937_64 random(1);
    const auto randomDouble = [&] {
        return std::ldexp(double(qint64(random())), int(random() % 120) - 90);
    };
    QByteArray document = "[";
    QList<UsageEvent> events;
    for (int i = 0; i < 2000; ++i) {
        UsageEvent event;
        event.id = QUuid::createUuid();
        event.timestamp = {randomDouble()};
        if (i % 2 == 0)
            event.slotIndex = qint64(random());
        if (i % 3 == 0) {
            const char32_t text[] = {char32_t(random() % 0x80), char32_t(random() % 0xD800), U'😀',
                                     U'"', U'\\'};
            event.targetAppName = QString::fromUcs4(text, std::size(text));
        }
        event.wordCount = qint64(random());
        event.durationMinutes = randomDouble();
        document.append(i == 0 ? "" : ",");
        appendJson(event, document);
        events.append(event);
    }
    document.append(']');
    EXPECT_EQ(usageEventsFromJson(document), events);

    const QJsonArray others = QJsonDocument::fromJson(document).array();
    ASSERT_EQ(others.size(), events.size());
    for (qsizetype i = 0; i < events.size(); ++i) {
        const QJsonObject object = others[i].toObject();
        EXPECT_EQ(object.value("timestamp"_L1).toDouble(),
                  events[i].timestamp.secondsSinceReferenceDate);
        EXPECT_EQ(object.value("wordCount"_L1).toInteger(), events[i].wordCount);
        EXPECT_EQ(object.value("targetAppName"_L1).toString(),
                  events[i].targetAppName.value_or(QString()));
    }
}

TEST(UsageEventsJson, EqualNamesShareTheirMemory)
{
    const QByteArray event = "{" + QByteArray(requiredMembers) + R"(,"targetAppName":"Editor"})";
    const auto events = usageEventsFromJson("[" + event + "," + event + "]");
    EXPECT_EQ(events[0].targetAppName->constData(), events[1].targetAppName->constData());
}

} // namespace
} // namespace kestrova
