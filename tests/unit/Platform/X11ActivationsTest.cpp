#include "Platform/Linux/X11/Windows/X11Workspace.h"

#include "support/ApplicationObject.h"
#include "support/PrivateXServer.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"
#include "support/WindowProgram.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class X11ActivationsTest : public testing::Test
{
protected:
    auto record(QStringList &names)
    {
        return workspace.observeActivations([&names](const RunningApplication &application) {
            names.append(application.localizedName.value_or(u"none"_s));
        });
    }

    bool activate(const WindowProgram &application)
    {
        workspace.activate(*workspace.runningApplication(application.processIdentifier()));
        return waitUntil([&] {
            const auto front = workspace.frontmostApplication();
            return front && front->processIdentifier == application.processIdentifier();
        });
    }

    ApplicationObject<QCoreApplication> application;
    X11Connection connection;
    DesktopEntries entries{QStringList()};
    X11Windows windows{connection, entries};
    X11Workspace workspace{connection, windows, entries};
};

TEST_F(X11ActivationsTest, EachApplicationThatComesToTheFrontIsReportedInOrder)
{
    QStringList names;
    const auto observation = record(names);
    const WindowProgram a(connection, u"a"_s, u"A"_s);
    ASSERT_TRUE(waitUntil([&] { return names.size() == 1; }));
    const WindowProgram b(connection, u"b"_s, u"B"_s);
    ASSERT_TRUE(waitUntil([&] { return names.size() == 2; }));
    ASSERT_TRUE(activate(a));
    ASSERT_TRUE(waitUntil([&] { return names.size() == 3; }));
    EXPECT_THAT(names, ElementsAre(u"A"_s, u"B"_s, u"A"_s));
}

TEST_F(X11ActivationsTest, TheApplicationThatIsInFrontAlreadyIsNotReported)
{
    const WindowProgram a(connection, u"a"_s, u"A"_s);
    QStringList names;
    const auto observation = record(names);
    const WindowProgram b(connection, u"b"_s, u"B"_s);
    ASSERT_TRUE(waitUntil([&] { return !names.isEmpty(); }));
    EXPECT_THAT(names, ElementsAre(u"B"_s));
}

TEST_F(X11ActivationsTest, AnotherWindowOfTheSameApplicationIsNotReported)
{
    const WindowProgram a(connection, u"a"_s, u"A"_s, 2);
    QStringList names;
    const auto observation = record(names);
    windows.activate(a.windows()[0]);
    ASSERT_TRUE(waitUntil([&] { return windows.active()->window == a.windows()[0]; }));
    const WindowProgram b(connection, u"b"_s, u"B"_s);
    ASSERT_TRUE(waitUntil([&] { return !names.isEmpty(); }));
    EXPECT_THAT(names, ElementsAre(u"B"_s));
}

TEST_F(X11ActivationsTest, AnEmptyDesktopIsNotReported)
{
    QStringList names;
    const auto observation = record(names);
    WindowProgram a(connection, u"a"_s, u"A"_s);
    ASSERT_TRUE(waitUntil([&] { return names.size() == 1; }));
    a.kill();
    ASSERT_TRUE(waitUntil([&] { return !workspace.frontmostApplication(); }));
    const WindowProgram b(connection, u"b"_s, u"B"_s);
    ASSERT_TRUE(waitUntil([&] { return names.size() == 2; }));
    EXPECT_THAT(names, ElementsAre(u"A"_s, u"B"_s));
}

TEST_F(X11ActivationsTest, ADestroyedObservationHearsNothing)
{
    QStringList first;
    QStringList second;
    auto ended = record(first);
    const auto observation = record(second);
    ended.reset();
    const WindowProgram a(connection, u"a"_s, u"A"_s);
    ASSERT_TRUE(waitUntil([&] { return !second.isEmpty(); }));
    EXPECT_TRUE(first.isEmpty());
}

TEST_F(X11ActivationsTest, AHandlerMayEndItsOwnAndAnotherObservation)
{
    QStringList others;
    int calls = 0;
    std::unique_ptr<Observation> own;
    std::unique_ptr<Observation> other;
    const auto endBoth = [&, kept = u"alive while it runs"_s](const RunningApplication &) {
        own.reset();
        other.reset();
        ++calls;
        EXPECT_EQ(kept, u"alive while it runs"_s);
    };
    own = workspace.observeActivations(endBoth);
    other = record(others);
    QStringList names;
    const auto observation = record(names);
    const WindowProgram a(connection, u"a"_s, u"A"_s);
    const WindowProgram b(connection, u"b"_s, u"B"_s);
    ASSERT_TRUE(waitUntil([&] { return names.contains(u"B"_s); }));
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(others.isEmpty());
}

TEST_F(X11ActivationsTest, AHandlerMayBeginAnObservation)
{
    QStringList names;
    std::vector<std::unique_ptr<Observation>> begun;
    const auto observation = workspace.observeActivations(
        [&](const RunningApplication &) { begun.push_back(record(names)); });
    const WindowProgram a(connection, u"a"_s, u"A"_s);
    ASSERT_TRUE(waitUntil([&] { return begun.size() == 1; }));
    const WindowProgram b(connection, u"b"_s, u"B"_s);
    ASSERT_TRUE(waitUntil([&] { return begun.size() == 2; }));
    EXPECT_THAT(names, ElementsAre(u"B"_s));
}

TEST_F(X11ActivationsTest, AnObservationMayOutliveTheWorkspace)
{
    auto other = std::make_unique<X11Workspace>(connection, windows, entries);
    int calls = 0;
    auto observation = other->observeActivations([&](const RunningApplication &) { ++calls; });
    other.reset();
    const WindowProgram a(connection, u"a"_s, u"A"_s);
    observation.reset();
    EXPECT_EQ(calls, 0);
}

// A display of whose root window the test says what a window manager would.
class X11LateWindowManagerTest : public X11ActivationsTest
{
protected:
    xcb_window_t createWindow()
    {
        const xcb_window_t window = xcb_generate_id(bare.xcb());
        xcb_create_window(bare.xcb(), XCB_COPY_FROM_PARENT, window, bare.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    void setOnRoot(const QByteArray &property, const std::vector<xcb_window_t> &windows)
    {
        xcb_change_property(bare.xcb(), XCB_PROP_MODE_REPLACE, bare.root(), bare.atom(property),
                            XCB_ATOM_WINDOW, 32, quint32(windows.size()), windows.data());
        // A round trip: the server has told the others.
        bare.value(bare.root(), property);
    }

    const PrivateXServer server;
    X11Connection bare{server.displayName()};
    X11Windows bareWindows{bare, entries};
    X11Workspace bareWorkspace{bare, bareWindows, entries, server.displayName()};
};

TEST_F(X11LateWindowManagerTest, AWindowThatIsActiveBeforeItIsListedIsReportedOnce)
{
    int calls = 0;
    const auto observation =
        bareWorkspace.observeActivations([&](const RunningApplication &) { ++calls; });
    const xcb_window_t window = createWindow();
    setOnRoot("_NET_ACTIVE_WINDOW", {window});
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
    setOnRoot("_NET_CLIENT_LIST", {window});
    EXPECT_TRUE(waitUntil([&] { return calls == 1; }));
    setOnRoot("_NET_CLIENT_LIST", {createWindow(), window});
    setOnRoot("_NET_ACTIVE_WINDOW", {window});
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace kestrova
