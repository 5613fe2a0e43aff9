#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"

#include "support/QtPrinting.h"
#include "support/SelectionClient.h"

#include <gmock/gmock.h>

#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::UnorderedElementsAre;

const QString text = u"Grüße 😀\n\t日本語"_s;

QString largeText()
{
    QString large;
    while (large.size() < 8'000'000)
        large += QString::number(large.size()) + u" Grüße 日本 😀\n"_s;
    return large;
}

TEST(X11Pasteboard, BothSelectionsHoldTheTextInEveryEncoding)
{
    X11Pasteboard pasteboard;
    pasteboard.setString(text);
    SelectionClient client;
    for (const char *selection : {"CLIPBOARD", "PRIMARY"}) {
        for (const char *target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain"}) {
            const auto value = client.read(selection, target);
            ASSERT_TRUE(value) << selection << target;
            EXPECT_EQ(value->type, target);
            EXPECT_EQ(value->bytes, text.toUtf8()) << selection << target;
        }
        const auto value = client.read(selection, "TEXT");
        ASSERT_TRUE(value);
        EXPECT_EQ(value->type, "UTF8_STRING");
        EXPECT_EQ(value->bytes, text.toUtf8());
    }
}

TEST(X11Pasteboard, StringIsOfferedExactlyWhenItCanCarryTheText)
{
    X11Pasteboard pasteboard;
    SelectionClient client;
    pasteboard.setString(u"Grüße"_s);
    EXPECT_THAT(client.targets("CLIPBOARD"),
                UnorderedElementsAre("TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS",
                                     "UTF8_STRING", "text/plain;charset=utf-8", "text/plain",
                                     "TEXT", "STRING"));
    EXPECT_EQ(client.read("CLIPBOARD", "STRING")->bytes, QString(u"Grüße"_s).toLatin1());

    pasteboard.setString(text);
    EXPECT_THAT(client.targets("CLIPBOARD"), Not(Contains("STRING")));
    EXPECT_FALSE(client.read("CLIPBOARD", "STRING"));
}

TEST(X11Pasteboard, AnUnknownTargetIsRefused)
{
    X11Pasteboard pasteboard;
    pasteboard.setString(text);
    EXPECT_FALSE(SelectionClient().read("CLIPBOARD", "image/png"));
}

TEST(X11Pasteboard, TimestampIsTheServerTimeOfTheTakeover)
{
    X11Pasteboard pasteboard;
    SelectionClient client;
    const xcb_timestamp_t before = client.time();
    pasteboard.setString(text);
    const xcb_timestamp_t after = client.time();
    const auto value = client.read("PRIMARY", "TIMESTAMP");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->type, "INTEGER");
    const auto time = *reinterpret_cast<const xcb_timestamp_t *>(value->bytes.constData());
    EXPECT_LE(before, time);
    EXPECT_LE(time, after);
}

TEST(X11Pasteboard, ARequestFromBeforeTheTakeoverIsRefused)
{
    X11Pasteboard pasteboard;
    SelectionClient client;
    const xcb_timestamp_t before = client.time() - 1;
    pasteboard.setString(text);
    EXPECT_FALSE(client.read("CLIPBOARD", "UTF8_STRING", before));
    EXPECT_TRUE(client.read("CLIPBOARD", "UTF8_STRING", client.time()));
}

TEST(X11Pasteboard, MultipleConvertsEachPairAndMarksTheRefusedOnes)
{
    X11Pasteboard pasteboard;
    pasteboard.setString(text);
    SelectionClient client;
    client.setAtoms("PAIRS", "ATOM_PAIR", {"UTF8_STRING", "A", "image/png", "B", "TIMESTAMP", "C"});
    ASSERT_TRUE(client.ask("CLIPBOARD", "MULTIPLE", "PAIRS"));
    EXPECT_THAT(client.takeAtoms("PAIRS"),
                ElementsAre("UTF8_STRING", "A", "image/png", "", "TIMESTAMP", "C"));
    EXPECT_EQ(client.take("A")->bytes, text.toUtf8());
    EXPECT_FALSE(client.take("B"));
    EXPECT_EQ(client.take("C")->type, "INTEGER");
}

TEST(X11Pasteboard, SeveralRequestorsGetTenMegabytesEachAtTheSameTime)
{
    X11Pasteboard pasteboard;
    const QString large = largeText();
    const QByteArray utf8 = large.toUtf8();
    ASSERT_GT(utf8.size(), 10'000'000);
    pasteboard.setString(large);
    std::vector<std::thread> requestors;
    std::vector<QByteArray> received(4);
    for (size_t i = 0; i < received.size(); ++i) {
        requestors.emplace_back([&received, i] {
            SelectionClient client;
            const auto value = client.read(i % 2 == 0 ? "CLIPBOARD" : "PRIMARY", "UTF8_STRING");
            received[i] = value ? value->bytes : QByteArray();
        });
    }
    for (std::thread &requestor : requestors)
        requestor.join();
    for (const QByteArray &bytes : received)
        EXPECT_TRUE(bytes == utf8) << bytes.size();
}

TEST(X11Pasteboard, ALargeTextUnderWayIsNotChangedByANewOne)
{
    X11Pasteboard pasteboard;
    const QString large = largeText();
    pasteboard.setString(large);
    SelectionClient client;
    ASSERT_TRUE(client.ask("CLIPBOARD", "UTF8_STRING", "BIG"));
    pasteboard.setString(text);
    EXPECT_EQ(client.take("BIG")->type, "INCR");
    EXPECT_TRUE(client.takePieces("BIG") == large.toUtf8());
    EXPECT_EQ(client.read("CLIPBOARD", "UTF8_STRING")->bytes, text.toUtf8());
}

TEST(X11Pasteboard, ARequestorThatHangsOrVanishesHoldsUpNobody)
{
    X11Pasteboard pasteboard;
    const QString large = largeText();
    pasteboard.setString(large);
    SelectionClient hanging;
    ASSERT_TRUE(hanging.ask("CLIPBOARD", "UTF8_STRING", "BIG"));
    {
        SelectionClient vanishing;
        ASSERT_TRUE(vanishing.ask("CLIPBOARD", "UTF8_STRING", "BIG"));
        EXPECT_TRUE(vanishing.take("BIG"));
    }
    EXPECT_TRUE(SelectionClient().read("CLIPBOARD", "UTF8_STRING")->bytes == large.toUtf8());
    EXPECT_EQ(hanging.take("BIG")->type, "INCR");
    EXPECT_TRUE(hanging.takePieces("BIG") == large.toUtf8());
}

TEST(X11Pasteboard, OwnTextIsReadBack)
{
    X11Pasteboard pasteboard;
    pasteboard.setString(text);
    EXPECT_EQ(pasteboard.string(), text);
    pasteboard.setString(QString());
    EXPECT_EQ(pasteboard.string(), QString());
}

TEST(X11Pasteboard, SomebodyElsesTakeoverEndsOursOfThatSelectionAlone)
{
    X11Pasteboard pasteboard;
    pasteboard.setString(text);
    SelectionClient other;
    other.own("CLIPBOARD");
    std::thread answering([&] { other.answer(other.waitForRequest(), {"UTF8_STRING", "theirs"}); });
    std::optional<QString> present = text;
    while (present == text) // until the news of the loss has come
        present = pasteboard.string();
    EXPECT_EQ(present, u"theirs"_s);
    answering.join();
    EXPECT_EQ(other.read("PRIMARY", "UTF8_STRING")->bytes, text.toUtf8());

    pasteboard.setString(u"again"_s);
    other.waitForLoss();
    EXPECT_EQ(other.read("CLIPBOARD", "UTF8_STRING")->bytes, "again");
}

TEST(X11Pasteboard, ReadsLatin1FromAnOwnerThatHasNothingElse)
{
    X11Pasteboard pasteboard;
    SelectionClient other;
    other.own("CLIPBOARD");
    std::thread answering([&] {
        other.answer(other.waitForRequest(), {});
        other.answer(other.waitForRequest(), {"STRING", QString(u"Grüße"_s).toLatin1()});
    });
    EXPECT_EQ(pasteboard.string(), u"Grüße"_s);
    answering.join();
}

TEST(X11Pasteboard, ReadsALargeTextInPieces)
{
    X11Pasteboard pasteboard;
    SelectionClient other;
    other.own("CLIPBOARD");
    const QString large = largeText();
    std::thread answering([&] {
        other.answerInPieces(other.waitForRequest(), {"UTF8_STRING", large.toUtf8()}, 100'003);
    });
    EXPECT_TRUE(pasteboard.string() == large);
    answering.join();
}

TEST(X11Pasteboard, HoldsNoTextWhenNobodyOwnsTheClipboard)
{
    EXPECT_EQ(X11Pasteboard().string(), std::nullopt);
}

TEST(X11Pasteboard, ManyThreadsMaySetIt)
{
    X11Pasteboard pasteboard;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] { pasteboard.setString(QString::number(i)); });
    for (std::thread &thread : threads)
        thread.join();
    pasteboard.setString(u"last"_s);
    EXPECT_EQ(SelectionClient().read("CLIPBOARD", "UTF8_STRING")->bytes, "last");
}

} // namespace
} // namespace kestrova
