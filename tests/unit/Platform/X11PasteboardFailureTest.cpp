#include "Platform/Linux/X11/Clipboard/SelectionReader.h"
#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"

#include "Models/ReadableError.h"
#include "support/PrivateXServer.h"
#include "support/QtPrinting.h"
#include "support/SelectionClient.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// How much longer than its limit something may take on a busy machine.
constexpr auto margin = 10s;

TEST(X11PasteboardFailure, AnOwnerThatNeverAnswersCountsAsNoText)
{
    X11Pasteboard pasteboard;
    SelectionClient hung;
    hung.own("CLIPBOARD");
    const auto start = Clock::now();
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_LT(Clock::now() - start, SelectionReader::answerLimit + margin);
}

TEST(X11PasteboardFailure, AnOwnerThatStopsInTheMiddleCountsAsNoText)
{
    X11Pasteboard pasteboard;
    SelectionClient owner;
    owner.own("CLIPBOARD");
    std::thread answering([&] {
        owner.answerInPieces(owner.waitForRequest(), {"UTF8_STRING", QByteArray(1000, 'x')}, 100,
                             3);
    });
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    answering.join();
}

TEST(X11PasteboardFailure, WhileAnOwnerHangsTheTextCanBeSetAndServed)
{
    X11Pasteboard pasteboard;
    SelectionClient hung;
    hung.own("CLIPBOARD");
    std::thread reading([&] { pasteboard.string(); });
    hung.waitForRequest();
    pasteboard.setString(u"text"_s);
    EXPECT_EQ(SelectionClient().read("CLIPBOARD", "UTF8_STRING")->bytes, "text");
    reading.join();
}

TEST(X11PasteboardFailure, WithoutAServerItCannotBeMade)
{
    EXPECT_THROW(X11Pasteboard(":4096"), PlatformError);
}

TEST(X11PasteboardFailure, TheServersDeathIsAReadableErrorAndNothingHangs)
{
    PrivateXServer server;
    X11Pasteboard pasteboard(server.displayName());
    pasteboard.setString(u"text"_s);
    server.kill();
    EXPECT_THROW(pasteboard.setString(u"more"_s), PlatformError);
    EXPECT_EQ(pasteboard.string(), std::nullopt);
}

TEST(X11PasteboardFailure, ADeathInTheMiddleOfALargeTextHangsNothing)
{
    PrivateXServer server;
    X11Pasteboard pasteboard(server.displayName());
    pasteboard.setString(QString(3'000'000, u'x'));
    SelectionClient client(server.displayName());
    ASSERT_TRUE(client.ask("CLIPBOARD", "UTF8_STRING", "BIG"));
    EXPECT_TRUE(client.take("BIG"));
    server.kill();
    EXPECT_THROW(pasteboard.setString(u"more"_s), PlatformError);
}

TEST(X11PasteboardFailure, AFrozenServerIsGivenUp)
{
    PrivateXServer server;
    const auto start = Clock::now();
    {
        X11Pasteboard pasteboard(server.displayName());
        pasteboard.setString(u"text"_s);
        server.freeze();
        EXPECT_EQ(pasteboard.string(), u"text"_s);
        EXPECT_THROW(pasteboard.setString(u"more"_s), PlatformError);
    }
    EXPECT_LT(Clock::now() - start, X11Pasteboard::takeoverLimit + SelectionServer::handoverLimit +
                                        SelectionServer::endLimit + margin);
}

} // namespace
} // namespace kestrova
