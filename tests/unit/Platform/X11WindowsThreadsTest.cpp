#include "Platform/Linux/X11/Connection/X11ServerTime.h"
#include "Platform/Linux/X11/Windows/X11Windows.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

// No other process is started here: ThreadSanitizer loses track of the locks of a thread that has
// called vfork().
TEST(X11WindowsThreads, SeveralThreadsMayLookAtOnce)
{
    X11Connection connection;
    DesktopEntries entries;
    X11Windows windows(connection, entries);
    const xcb_window_t window = xcb_generate_id(connection.xcb());
    xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 100,
                      100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection.xcb(), window);
    xcb_flush(connection.xcb());
    ASSERT_TRUE(waitUntil([&] { return windows.active().has_value(); }));

    const auto look = [&] {
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(windows.all().size(), 1);
            EXPECT_EQ(windows.active()->bundleIdentifier, u"com.kestrova.app"_s);
            EXPECT_TRUE(entries.application(u"debian-xterm"_s));
            EXPECT_TRUE(entries.application(WindowClues{{}, {}, u"XTerm"_s, {}}));
            EXPECT_NE(serverTime(connection), 0U);
        }
    };
    std::thread worker(look);
    look();
    worker.join();
}

} // namespace
} // namespace kestrova
