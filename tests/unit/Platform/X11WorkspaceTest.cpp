#include "Platform/Linux/X11/Windows/X11Workspace.h"

#include "support/ApplicationObject.h"
#include "support/PrivateXServer.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"
#include "support/WindowProgram.h"

#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class X11WorkspaceTest : public testing::Test
{
protected:
    X11WorkspaceTest() { install(u"editor"_s, "Name=Editor\nStartupWMClass=EditorClass\n"); }

    void install(const QString &identifier, const QByteArray &keys)
    {
        QFile file(m_folder.filePath(identifier + u".desktop"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nExec=/bin/true %F\n" + keys);
    }

    qint32 frontProcess()
    {
        const auto front = workspace.frontmostApplication();
        return front ? front->processIdentifier : -1;
    }

    bool comesToFront(const WindowProgram &application)
    {
        return waitUntil([&] { return frontProcess() == application.processIdentifier(); });
    }

    bool windowComesToFront(xcb_window_t window)
    {
        return waitUntil([&] {
            const auto active = windows.active();
            return active && active->window == window;
        });
    }

    void activate(const WindowProgram &application)
    {
        const auto running = workspace.runningApplication(application.processIdentifier());
        ASSERT_TRUE(running);
        workspace.activate(*running);
    }

    ApplicationObject<QCoreApplication> application;
    QTemporaryDir m_folder;
    X11Connection connection;
    DesktopEntries entries{{m_folder.path()}};
    X11Windows windows{connection, entries};
    X11Workspace workspace{connection, windows, entries};
};

TEST_F(X11WorkspaceTest, NoApplicationIsInFrontOnAnEmptyDesktop)
{
    EXPECT_FALSE(workspace.frontmostApplication());
    EXPECT_FALSE(workspace.runningApplication(getpid()));
    EXPECT_TRUE(workspace.runningApplications(u"editor"_s).isEmpty());
}

TEST_F(X11WorkspaceTest, TheApplicationWithTheKeyboardIsInFront)
{
    const WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    RunningApplication expected;
    expected.processIdentifier = editor.processIdentifier();
    expected.bundleIdentifier = u"editor"_s;
    expected.localizedName = u"Editor"_s;
    expected.isActive = true;
    expected.isInTaskBar = true;
    expected.keyboardWindow = editor.windows().first();
    EXPECT_EQ(workspace.frontmostApplication(), expected);
    EXPECT_EQ(workspace.runningApplication(editor.processIdentifier()), expected);
    EXPECT_THAT(workspace.runningApplications(u"editor"_s), ElementsAre(expected));
}

TEST_F(X11WorkspaceTest, AnApplicationThatIsNotInstalledHasItsClassForAName)
{
    const WindowProgram other(connection, u"a"_s, u"Other"_s);
    const auto front = workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->bundleIdentifier, std::nullopt);
    EXPECT_EQ(front->localizedName, u"Other"_s);
}

TEST_F(X11WorkspaceTest, AnApplicationWithoutAClassHasItsProcessForAName)
{
    WindowProgram other(connection, u""_s, u""_s);
    other.remove(other.windows().first(), "WM_CLASS");
    const auto front = workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->localizedName, u"WindowApplicati"_s); // as far as the kernel keeps it
}

TEST_F(X11WorkspaceTest, OurOwnWindowsBelongToUs)
{
    X11Connection &own = connection;
    const xcb_window_t window = xcb_generate_id(own.xcb());
    xcb_create_window(own.xcb(), XCB_COPY_FROM_PARENT, window, own.root(), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(own.xcb(), window);
    xcb_flush(own.xcb());
    ASSERT_TRUE(windowComesToFront(window));
    const auto front = workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(front->processIdentifier, getpid());
    EXPECT_EQ(front->bundleIdentifier, u"com.kestrova.app"_s);
    EXPECT_EQ(front->localizedName, u"Kestrova"_s);
}

TEST_F(X11WorkspaceTest, AnIdentifierIsComparedExactly)
{
    const WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    EXPECT_TRUE(workspace.runningApplications(u"Editor"_s).isEmpty());
    EXPECT_TRUE(workspace.isInstalled(u"editor"_s));
    EXPECT_FALSE(workspace.isInstalled(u"Editor"_s));
}

TEST_F(X11WorkspaceTest, ActivatingBringsAnApplicationFromBehind)
{
    const WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    const WindowProgram other(connection, u"b"_s, u"Other"_s);
    ASSERT_EQ(frontProcess(), other.processIdentifier());
    EXPECT_FALSE(workspace.runningApplication(editor.processIdentifier())->isActive);
    activate(editor);
    EXPECT_TRUE(comesToFront(editor));
}

TEST_F(X11WorkspaceTest, ActivatingRestoresAMinimisedApplication)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    const WindowProgram other(connection, u"b"_s, u"Other"_s);
    editor.minimise(editor.windows().first());
    activate(editor);
    EXPECT_TRUE(comesToFront(editor));
}

TEST_F(X11WorkspaceTest, ActivatingSwitchesToTheApplicationsDesktop)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    editor.moveToDesktop(editor.windows().first(), 2);
    ASSERT_EQ(connection.value(connection.root(), "_NET_CURRENT_DESKTOP"), 0U);
    activate(editor);
    EXPECT_TRUE(comesToFront(editor));
    EXPECT_EQ(connection.value(connection.root(), "_NET_CURRENT_DESKTOP"), 2U);
}

TEST_F(X11WorkspaceTest, OfSeveralWindowsTheTopmostIsActivated)
{
    const WindowProgram editor(connection, u"a"_s, u"EditorClass"_s, 3);
    windows.activate(editor.windows()[1]);
    ASSERT_TRUE(windowComesToFront(editor.windows()[1]));
    const WindowProgram other(connection, u"b"_s, u"Other"_s);
    activate(editor);
    EXPECT_TRUE(windowComesToFront(editor.windows()[1]));
}

TEST_F(X11WorkspaceTest, AVisibleWindowIsActivatedBeforeAMinimisedOne)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s, 2);
    const WindowProgram other(connection, u"b"_s, u"Other"_s);
    editor.minimise(editor.windows()[1]);
    activate(editor);
    EXPECT_TRUE(windowComesToFront(editor.windows()[0]));
}

TEST_F(X11WorkspaceTest, AnOrdinaryWindowIsActivatedBeforeAPalette)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s, 2);
    editor.setValue(editor.windows()[1], "_NET_WM_WINDOW_TYPE", "ATOM",
                    connection.atom("_NET_WM_WINDOW_TYPE_UTILITY"));
    const WindowProgram other(connection, u"b"_s, u"Other"_s);
    activate(editor);
    EXPECT_TRUE(windowComesToFront(editor.windows()[0]));
}

TEST_F(X11WorkspaceTest, AnApplicationOfPalettesAloneIsNotRegular)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s, 2);
    for (const xcb_window_t window : editor.windows())
        editor.setValue(window, "_NET_WM_WINDOW_TYPE", "ATOM",
                        connection.atom("_NET_WM_WINDOW_TYPE_UTILITY"));
    EXPECT_FALSE(workspace.frontmostApplication()->isInTaskBar);
    EXPECT_FALSE(workspace.runningApplication(editor.processIdentifier())->isInTaskBar);
    editor.remove(editor.windows()[0], "_NET_WM_WINDOW_TYPE");
    EXPECT_TRUE(workspace.frontmostApplication()->isInTaskBar);
    EXPECT_TRUE(workspace.runningApplication(editor.processIdentifier())->isInTaskBar);
    editor.setValue(editor.windows()[0], "_NET_WM_STATE", "ATOM",
                    connection.atom("_NET_WM_STATE_SKIP_TASKBAR"));
    EXPECT_FALSE(workspace.frontmostApplication()->isInTaskBar);
}

TEST_F(X11WorkspaceTest, InstancesAreGivenOldestFirst)
{
    const WindowProgram first(connection, u"a"_s, u"EditorClass"_s);
    const WindowProgram second(connection, u"a"_s, u"EditorClass"_s);
    const WindowProgram third(connection, u"a"_s, u"EditorClass"_s);
    activate(first);
    ASSERT_TRUE(comesToFront(first));
    QList<qint32> processes;
    for (const RunningApplication &instance : workspace.runningApplications(u"editor"_s))
        processes.append(instance.processIdentifier);
    EXPECT_THAT(processes, ElementsAre(first.processIdentifier(), second.processIdentifier(),
                                       third.processIdentifier()));
}

TEST_F(X11WorkspaceTest, TheApplicationsOfOneProcessAreToldApart)
{
    install(u"tables"_s, "Name=Tables\nStartupWMClass=TablesClass\n");
    WindowProgram suite(connection, u"a"_s, u"EditorClass"_s, 2);
    suite.setText(suite.windows()[0], "WM_CLASS", QByteArray("a\0TablesClass\0", 14));
    const auto tables = workspace.runningApplications(u"tables"_s);
    ASSERT_EQ(tables.size(), 1);
    EXPECT_FALSE(tables.first().isActive);
    EXPECT_TRUE(tables.first().sharesProcess);
    EXPECT_EQ(workspace.frontmostApplication()->asTarget(),
              (TargetApplication{0, u"editor"_s, u"Editor"_s}));
    EXPECT_FALSE(workspace.runningApplication(suite.processIdentifier()));
    workspace.activate(tables.first());
    ASSERT_TRUE(windowComesToFront(suite.windows()[0]));
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, u"tables"_s);
}

TEST_F(X11WorkspaceTest, AProcessIsSharedEvenWhenItShowsOneApplicationAfterTheOther)
{
    install(u"tables"_s, "Name=Tables\nStartupWMClass=TablesClass\n");
    WindowProgram suite(connection, u"a"_s, u"EditorClass"_s);
    EXPECT_FALSE(workspace.frontmostApplication()->sharesProcess);
    suite.setText(suite.windows().first(), "WM_CLASS", QByteArray("a\0TablesClass\0", 14));
    EXPECT_TRUE(workspace.frontmostApplication()->sharesProcess);
    const WindowProgram other(connection, u"b"_s, u"EditorClass"_s);
    EXPECT_FALSE(workspace.frontmostApplication()->sharesProcess) << "another process";
}

TEST_F(X11WorkspaceTest, AWindowOfNoInstalledApplicationDoesNotMakeAProcessShared)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s, 2);
    editor.setText(editor.windows()[1], "WM_CLASS", QByteArray("x\0Dialog\0", 9));
    const auto front = workspace.frontmostApplication();
    EXPECT_FALSE(front->sharesProcess);
    EXPECT_EQ(front->asTarget()->processIdentifier, editor.processIdentifier());
}

TEST_F(X11WorkspaceTest, ADialogWithAClassOfItsOwnBelongsToItsWindow)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s, 2);
    editor.setText(editor.windows()[1], "WM_CLASS", QByteArray("x\0Dialog\0", 9));
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, std::nullopt);
    editor.setValue(editor.windows()[1], "WM_TRANSIENT_FOR", "WINDOW", editor.windows()[0]);
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, u"editor"_s);
}

TEST_F(X11WorkspaceTest, TheGtkIdentifierOfAWindowIsRead)
{
    install(u"org.example.Other"_s, "Name=Other Thing\n");
    WindowProgram other(connection, u"a"_s, u"EditorClass"_s);
    other.setText(other.windows().first(), "_GTK_APPLICATION_ID", "org.example.Other");
    EXPECT_EQ(workspace.frontmostApplication()->localizedName, u"Other Thing"_s);
}

TEST_F(X11WorkspaceTest, AnApplicationInstalledWhileItRunsIsRecognised)
{
    const WindowProgram late(connection, u"late"_s, u"Late"_s);
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, std::nullopt);
    install(u"org.example.late"_s, "Name=Late\n");
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, u"org.example.late"_s);
}

TEST_F(X11WorkspaceTest, AnEndedApplicationIsNotRunning)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    const auto before = workspace.frontmostApplication();
    editor.kill();
    EXPECT_FALSE(workspace.runningApplication(before->processIdentifier));
    EXPECT_TRUE(workspace.runningApplications(u"editor"_s).isEmpty());
    workspace.activate(*before);
    EXPECT_FALSE(workspace.frontmostApplication());
}

TEST_F(X11WorkspaceTest, AnActiveWindowThatNoLongerExistsIsNoApplication)
{
    WindowProgram editor(connection, u"a"_s, u"EditorClass"_s);
    const xcb_window_t window = editor.windows().first();
    editor.kill();
    editor.setValue(connection.root(), "_NET_ACTIVE_WINDOW", "WINDOW", window);
    EXPECT_FALSE(workspace.frontmostApplication());
}

TEST_F(X11WorkspaceTest, WithoutAnXServerNothingIsRunning)
{
    X11Connection none(":12345");
    X11Windows noWindows(none, entries);
    X11Workspace lost(none, noWindows, entries, ":12345");
    EXPECT_FALSE(none.isOpen());
    EXPECT_FALSE(lost.frontmostApplication());
    EXPECT_TRUE(lost.runningApplications(u"editor"_s).isEmpty());
    lost.activate({});
}

TEST_F(X11WorkspaceTest, AKilledXServerIsSurvived)
{
    PrivateXServer server;
    X11Connection other(server.displayName());
    X11Windows otherWindows(other, entries);
    X11Workspace lost(other, otherWindows, entries, server.displayName());
    const auto observation =
        lost.observeActivations([](const RunningApplication &) { FAIL() << "nothing came"; });
    EXPECT_TRUE(other.isOpen());
    server.kill();
    EXPECT_FALSE(lost.frontmostApplication());
    EXPECT_TRUE(lost.runningApplications(u"editor"_s).isEmpty());
    RunningApplication gone;
    gone.processIdentifier = 1;
    lost.activate(gone);
    EXPECT_FALSE(other.isOpen());
    // The dead connection must not keep the event loop busy.
    QCoreApplication::processEvents();
    EXPECT_FALSE(QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents));
}

TEST_F(X11WorkspaceTest, AWindowIsKeptOffTaskBarsOnceItIsShown)
{
    const xcb_window_t window = xcb_generate_id(connection.xcb());
    xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 50,
                      50, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    windows.keepOffTaskBars(window);
    xcb_map_window(connection.xcb(), window);
    xcb_flush(connection.xcb());
    ASSERT_TRUE(waitUntil(
        [&] { return connection.values(connection.root(), "_NET_CLIENT_LIST").contains(window); }));
    EXPECT_TRUE(connection.values(window, "_NET_WM_STATE")
                    .contains(connection.atom("_NET_WM_STATE_SKIP_TASKBAR")));
}

TEST_F(X11WorkspaceTest, PanelsAreTheDockWindows)
{
    EXPECT_TRUE(windows.panels().isEmpty());
    const xcb_window_t window = xcb_generate_id(connection.xcb());
    xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 300,
                      32, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t dock = connection.atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window,
                        connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
    xcb_map_window(connection.xcb(), window);
    xcb_flush(connection.xcb());
    ASSERT_TRUE(waitUntil([this] { return !windows.panels().isEmpty(); }));
    // Wherever the window manager has put it.
    const std::array<quint32, 2> corner{10, 20};
    xcb_configure_window(connection.xcb(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         corner.data());
    xcb_flush(connection.xcb());
    EXPECT_TRUE(
        waitUntil([this] { return windows.panels() == QList<QRect>{QRect(10, 20, 300, 32)}; }));
}

} // namespace
} // namespace kestrova
