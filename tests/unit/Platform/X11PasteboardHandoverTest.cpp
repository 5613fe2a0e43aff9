#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"

#include "support/QtPrinting.h"
#include "support/SelectionClient.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto margin = 10s;

TEST(X11PasteboardHandover, TheManagerReadsTheTextWhileWeWait)
{
    SelectionClient manager;
    manager.own("CLIPBOARD_MANAGER");
    auto pasteboard = std::make_unique<X11Pasteboard>();
    const QString text(2'000'000, u'ä');
    pasteboard->setString(text);
    QByteArray saved;
    std::thread saving([&] {
        const auto request = manager.waitForRequest();
        EXPECT_EQ(request.target, manager.atom("SAVE_TARGETS"));
        saved = manager.read("CLIPBOARD", "UTF8_STRING", request.time)->bytes;
        manager.answer(request, {"NULL", {}});
    });
    const auto start = Clock::now();
    pasteboard.reset();
    EXPECT_LT(Clock::now() - start, SelectionServer::handoverLimit);
    saving.join();
    EXPECT_TRUE(saved == text.toUtf8()) << saved.size();
}

TEST(X11PasteboardHandover, AManagerMayAnswerByTakingTheClipboard)
{
    SelectionClient manager;
    manager.own("CLIPBOARD_MANAGER");
    auto pasteboard = std::make_unique<X11Pasteboard>();
    pasteboard->setString(u"text"_s);
    std::thread saving([&] {
        manager.waitForRequest();
        manager.own("CLIPBOARD");
    });
    const auto start = Clock::now();
    pasteboard.reset();
    EXPECT_LT(Clock::now() - start, SelectionServer::handoverLimit);
    saving.join();
}

TEST(X11PasteboardHandover, AHungManagerIsGivenUp)
{
    SelectionClient manager;
    manager.own("CLIPBOARD_MANAGER");
    auto pasteboard = std::make_unique<X11Pasteboard>();
    pasteboard->setString(u"text"_s);
    const auto start = Clock::now();
    pasteboard.reset();
    EXPECT_GE(Clock::now() - start, SelectionServer::handoverLimit);
    EXPECT_LT(Clock::now() - start, SelectionServer::handoverLimit + margin);
}

TEST(X11PasteboardHandover, NothingIsHandedOverOnceSomebodyElseOwnsTheClipboard)
{
    SelectionClient manager;
    manager.own("CLIPBOARD_MANAGER");
    auto pasteboard = std::make_unique<X11Pasteboard>();
    pasteboard->setString(u"text"_s);
    manager.own("CLIPBOARD");
    const auto start = Clock::now();
    pasteboard.reset(); // would wait for the manager, which does not answer
    EXPECT_LT(Clock::now() - start, SelectionServer::handoverLimit);
}

TEST(X11PasteboardHandover, WithoutAManagerNobodyWaits)
{
    auto pasteboard = std::make_unique<X11Pasteboard>();
    pasteboard->setString(u"text"_s);
    const auto start = Clock::now();
    pasteboard.reset();
    EXPECT_LT(Clock::now() - start, SelectionServer::handoverLimit);
}

} // namespace
} // namespace kestrova
