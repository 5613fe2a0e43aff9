#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"
#include "support/KeyPresses.h"

#include <QCoreApplication>

#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

/// How soon a key press in another program calls a handler on the main thread. Runs inside
/// tools/virtual-desktop.
namespace kestrova {
namespace {

using std::chrono::steady_clock;

constexpr int presses = 500;

class HotkeyBenchmark
{
public:
    void run()
    {
        print("the same keyboard", [this](int) { tap(m_keyboard, key::a); });
        // As after a paste of our own: the server then gives the keyboard another keymap.
        print("another keyboard each time", [this](int number) {
            if (number % 2 == 0)
                tap(m_keyboard, key::a);
            else
                tapSynthetic();
        });
    }

private:
    void print(const char *what, const std::function<void(int)> &tapKey)
    {
        std::vector<double> milliseconds;
        for (int number = 0; number < presses; ++number) {
            m_isReported = false;
            const auto begin = steady_clock::now();
            tapKey(number);
            while (!m_isReported)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            milliseconds.push_back(
                std::chrono::duration<double, std::milli>(steady_clock::now() - begin).count());
        }
        std::sort(milliseconds.begin(), milliseconds.end());
        std::printf("%-28s median %6.2f  99th %6.2f  max %6.2f ms\n", what,
                    milliseconds[presses / 2], milliseconds[presses * 99 / 100],
                    milliseconds.back());
    }

    void tapSynthetic()
    {
        for (const uint8_t type : {uint8_t(XCB_KEY_PRESS), uint8_t(XCB_KEY_RELEASE)})
            xcb_test_fake_input(m_connection.xcb(), type, key::a, XCB_CURRENT_TIME, XCB_WINDOW_NONE,
                                0, 0, 0);
        xcb_flush(m_connection.xcb());
    }

    X11Connection m_connection;
    VirtualKeyboard m_keyboard{m_connection.xcb()};
    PostedKeys m_postedKeys;
    X11KeyEventMonitoring m_monitoring{m_postedKeys};
    bool m_isReported = false;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_monitor = m_monitoring.addGlobalMonitor(
        KeyEvent::keyDown, [this](const KeyEvent &) { m_isReported = true; });
};

} // namespace
} // namespace kestrova

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    kestrova::HotkeyBenchmark().run();
    return 0;
}
