#include "Platform/Platform.h"

#include "Models/ReadableError.h"
#include "support/QtPrinting.h"
#include "support/TerminalWindow.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class MakePlatformTest : public testing::Test
{
protected:
    int m_argumentCount = 1;
    char m_name[12] = "kestrova-ut";
    char *m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_argumentCount, m_arguments};
};

TEST_F(MakePlatformTest, OnADesktopItsServicesWork)
{
    const Platform platform = makePlatform(findDesktopSession());
    const TerminalWindow window(u"target"_s);
    ASSERT_TRUE(waitUntil([&] {
        const auto front = platform.workspace->frontmostApplication();
        return front && front->processIdentifier == window.processIdentifier();
    }));
    platform.pasteboard->setString(u"text"_s);
    EXPECT_EQ(platform.pasteboard->string(), u"text"_s);
    EXPECT_EQ(platform.keyEvents->postCommandV({}), KeyEventPosting::Outcome::sent);
    EXPECT_TRUE(platform.scripts->paste(std::nullopt));
    EXPECT_NE(platform.keyMonitoring->addGlobalMonitor(KeyEvent::keyDown, [](const auto &) {}),
              nullptr);
    EXPECT_NE(platform.keyMonitoring->addLocalMonitor(KeyEvent::keyDown,
                                                      [](const auto &) { return false; }),
              nullptr);
    EXPECT_FALSE(platform.directories->applicationSupportDirectory().isEmpty());
    EXPECT_FALSE(platform.userDefaults->data(u"kestrova.test"_s).has_value());
    EXPECT_EQ(platform.systemAccess->accessibility(), Access::granted);
    EXPECT_NE(platform.terminal, nullptr);
    EXPECT_FALSE(platform.appearance->isCompositing());
    EXPECT_FALSE(platform.systemAccess->microphoneSettingsPages().isEmpty());
    EXPECT_EQ(platform.processes->run(u"true"_s, {}, {}).terminationStatus, 0);
}

TEST_F(MakePlatformTest, ABrokenConnectionDoesNotEndUsAndChildrenKeepTheDefault)
{
    std::signal(SIGPIPE, SIG_DFL);
    const Platform platform = makePlatform(findDesktopSession());
    EXPECT_EQ(std::signal(SIGPIPE, SIG_IGN), SIG_IGN);
    const ProcessOutcome child =
        platform.processes->run(u"grep"_s, {u"^SigIgn:"_s, u"/proc/self/status"_s}, {});
    const quint64 ignored =
        child.standardOutput.split('\t').value(1).trimmed().toULongLong(nullptr, 16);
    EXPECT_EQ(child.terminationStatus, 0);
    EXPECT_EQ(ignored & (1ULL << (SIGPIPE - 1)), 0U);
}

TEST_F(MakePlatformTest, WithoutADisplayNothingRunsAndNothingIsSent)
{
    const QByteArray display = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    const Platform platform = makePlatform(findDesktopSession());
    EXPECT_EQ(platform.workspace->frontmostApplication(), std::nullopt);
    EXPECT_TRUE(platform.workspace->runningApplications(u"debian-xterm"_s).isEmpty());
    EXPECT_FALSE(platform.workspace->openAddress(QUrl(u"https://example.org"_s)));
    EXPECT_NE(platform.workspace->observeActivations([](const auto &) {}), nullptr);
    EXPECT_EQ(platform.pasteboard->string(), std::nullopt);
    EXPECT_THROW(platform.pasteboard->setString(u"text"_s), PlatformError);
    EXPECT_EQ(platform.keyEvents->postCommandV({}), KeyEventPosting::Outcome::unavailable);
    EXPECT_EQ(platform.keyMonitoring->addGlobalMonitor(KeyEvent::keyDown, [](const auto &) {}),
              nullptr);
    EXPECT_EQ(platform.keyMonitoring->addLocalMonitor(KeyEvent::keyDown,
                                                      [](const auto &) { return false; }),
              nullptr);
    EXPECT_FALSE(platform.scripts->activateApplicationNamed(u"xterm"_s));
    EXPECT_FALSE(platform.scripts->paste(std::nullopt));
    EXPECT_EQ(platform.systemAccess->accessibility(), Access::unavailable);
    EXPECT_FALSE(platform.appearance->isCompositing());
    qputenv("DISPLAY", display);
}

} // namespace
} // namespace kestrova
