#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"
#include "Platform/Linux/X11/Connection/X11ClientProcess.h"

#include "support/QtPrinting.h"
#include "support/SelectionClient.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

const QString text = u"Grüße 😀"_s;
const QList<qint32> ourselves{getpid()};
const QList<qint32> nobody;

/// The server's time, which has gone on when this returns.
xcb_timestamp_t passingTime(SelectionClient &client)
{
    const xcb_timestamp_t time = client.time();
    EXPECT_TRUE(waitUntil([&] { return client.time() != time; }));
    return time;
}

TEST(X11PasteboardReaders, WhoeverReadsEitherSelectionInAnyEncodingIsKnownByItsProcess)
{
    X11Pasteboard pasteboard;
    SelectionClient client;
    for (const char *selection : {"CLIPBOARD", "PRIMARY"}) {
        for (const char *target : {"UTF8_STRING", "TEXT", "text/plain", "STRING"}) {
            const auto offer = pasteboard.setString(u"plain"_s);
            EXPECT_EQ(offer->takeReaders(), nobody);
            ASSERT_TRUE(client.read(selection, target));
            EXPECT_EQ(offer->takeReaders(), ourselves) << selection << target;
            EXPECT_EQ(offer->takeReaders(), nobody);
        }
    }
}

TEST(X11PasteboardReaders, AskingWhatThereIsDoesNotCount)
{
    X11Pasteboard pasteboard;
    const auto offer = pasteboard.setString(text);
    SelectionClient client;
    EXPECT_FALSE(client.targets("CLIPBOARD").empty());
    EXPECT_TRUE(client.read("CLIPBOARD", "TIMESTAMP"));
    EXPECT_FALSE(client.read("CLIPBOARD", "image/png"));
    EXPECT_FALSE(client.read("CLIPBOARD", "STRING")) << "Latin-1 cannot carry this text";
    EXPECT_EQ(offer->takeReaders(), nobody);
}

TEST(X11PasteboardReaders, TheTextAmongSeveralTargetsCounts)
{
    X11Pasteboard pasteboard;
    const auto offer = pasteboard.setString(text);
    SelectionClient client;
    client.setAtoms("PAIRS", "ATOM_PAIR", {"TARGETS", "A", "TIMESTAMP", "B"});
    ASSERT_TRUE(client.ask("CLIPBOARD", "MULTIPLE", "PAIRS"));
    EXPECT_EQ(offer->takeReaders(), nobody);
    client.setAtoms("PAIRS", "ATOM_PAIR", {"TARGETS", "A", "UTF8_STRING", "B"});
    ASSERT_TRUE(client.ask("CLIPBOARD", "MULTIPLE", "PAIRS"));
    EXPECT_EQ(offer->takeReaders(), ourselves);
}

TEST(X11PasteboardReaders, OnlyTheLossOfTheClipboardIsAReplacement)
{
    X11Pasteboard pasteboard;
    const auto first = pasteboard.setString(u"first"_s);
    const auto second = pasteboard.setString(u"second"_s);
    EXPECT_FALSE(first->isReplaced()) << "by ourselves";

    SelectionClient other;
    other.own("PRIMARY");
    other.read("CLIPBOARD", "UTF8_STRING"); // the news of the loss came before this request
    EXPECT_FALSE(second->isReplaced());
    other.own("CLIPBOARD");
    EXPECT_TRUE(waitUntil([&] { return second->isReplaced(); }));
}

TEST(X11PasteboardReaders, WhoHungWhileTwoTextsCameGetsBoth)
{
    X11Pasteboard pasteboard;
    SelectionClient client;
    const auto first = pasteboard.setString(u"first"_s);
    const xcb_timestamp_t firstKeyPress = passingTime(client);
    const auto second = pasteboard.setString(u"second"_s);
    const xcb_timestamp_t secondKeyPress = client.time();

    EXPECT_EQ(client.read("CLIPBOARD", "UTF8_STRING", firstKeyPress)->bytes, "first");
    EXPECT_EQ(first->takeReaders(), ourselves);
    EXPECT_EQ(second->takeReaders(), nobody);
    EXPECT_EQ(client.read("PRIMARY", "UTF8_STRING", secondKeyPress)->bytes, "second");
    EXPECT_EQ(client.read("CLIPBOARD", "UTF8_STRING")->bytes, "second") << "without a time";
    EXPECT_EQ(first->takeReaders(), nobody);
    EXPECT_EQ(second->takeReaders(), ourselves);
}

TEST(X11PasteboardReaders, WhoAskedWhatThereWasThenGetsThatTextOnce)
{
    X11Pasteboard pasteboard;
    SelectionClient hanging;
    SelectionClient other;
    const auto first = pasteboard.setString(u"first ö"_s);
    const xcb_timestamp_t firstKeyPress = passingTime(hanging);
    pasteboard.setString(u"second"_s);
    const xcb_timestamp_t secondKeyPress = hanging.time();

    EXPECT_TRUE(hanging.read("CLIPBOARD", "TARGETS", firstKeyPress));
    EXPECT_FALSE(hanging.read("CLIPBOARD", "image/png", secondKeyPress));
    EXPECT_EQ(other.read("CLIPBOARD", "UTF8_STRING", secondKeyPress)->bytes, "second");
    EXPECT_EQ(hanging.read("CLIPBOARD", "UTF8_STRING", secondKeyPress)->bytes, "first ö");
    EXPECT_EQ(first->takeReaders(), ourselves);
    EXPECT_EQ(hanging.read("CLIPBOARD", "UTF8_STRING", secondKeyPress)->bytes, "second");
}

TEST(X11PasteboardReaders, SomebodyElsesTakeoverEndsTheEarlierTextsToo)
{
    X11Pasteboard pasteboard;
    SelectionClient other;
    pasteboard.setString(u"first"_s);
    const xcb_timestamp_t time = passingTime(other);
    const auto second = pasteboard.setString(u"second"_s);
    other.own("CLIPBOARD");
    ASSERT_TRUE(waitUntil([&] { return second->isReplaced(); }));
    pasteboard.setString(u"third"_s);
    EXPECT_FALSE(other.read("CLIPBOARD", "UTF8_STRING", time));
}

TEST(X11PasteboardReaders, ManyEarlierTextsAreNotKept)
{
    X11Pasteboard pasteboard;
    SelectionClient client;
    std::vector<xcb_timestamp_t> times;
    for (size_t i = 0; i < SelectionOwner::mostEarlierTexts + 2; ++i) {
        pasteboard.setString(QString::number(i));
        times.push_back(passingTime(client));
    }
    EXPECT_FALSE(client.read("CLIPBOARD", "UTF8_STRING", times[0]));
    EXPECT_EQ(client.read("CLIPBOARD", "UTF8_STRING", times[1])->bytes, "1");
}

/// A client whose process forked after it had connected, as programs do to leave their terminal:
/// the X server knows it by the process that has ended.
class ForkedClient
{
public:
    ForkedClient()
    {
        if (pipe(m_windows) != 0 || pipe(m_end) != 0)
            throw std::runtime_error("no pipe");
        const pid_t connecting = fork();
        if (connecting == 0) {
            xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
            if (fork() == 0)
                showWindows(connection);
            _exit(0);
        }
        waitpid(connecting, nullptr, 0);
        if (read(m_windows[0], &client, sizeof client) != sizeof client)
            throw std::runtime_error("no windows");
    }
    ~ForkedClient()
    {
        for (const int descriptor : {m_windows[0], m_windows[1], m_end[0], m_end[1]})
            close(descriptor);
    }

    struct
    {
        pid_t process;
        xcb_window_t shown; // names its process
        xcb_window_t requestor;
    } client = {};

private:
    static xcb_window_t createWindow(xcb_connection_t *connection)
    {
        const xcb_window_t window = xcb_generate_id(connection);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 10, 10, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    void showWindows(xcb_connection_t *connection)
    {
        client = {getpid(), createWindow(connection), createWindow(connection)};
        const auto cookie = xcb_intern_atom(connection, 0, 11, "_NET_WM_PID");
        const XcbPointer<xcb_intern_atom_reply_t> atom(
            xcb_intern_atom_reply(connection, cookie, nullptr));
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.shown, atom->atom,
                            XCB_ATOM_CARDINAL, 32, 1, &client.process);
        xcb_map_window(connection, client.shown);
        xcb_flush(connection);
        close(m_end[1]);
        char ignored = 0;
        if (write(m_windows[1], &client, sizeof client) == sizeof client)
            std::ignore = read(m_end[0], &ignored, 1); // until the other end is closed
    }

    int m_windows[2] = {};
    int m_end[2] = {};
};

TEST(X11PasteboardReaders, AClientThatHasForkedIsKnownByWhatItsWindowsName)
{
    X11Connection connection;
    const ForkedClient forked;
    EXPECT_TRUE(waitUntil([&] {
        return requestorProcess(connection, forked.client.requestor) == forked.client.process;
    }));
}

} // namespace
} // namespace kestrova
