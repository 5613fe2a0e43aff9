// Another program with the keyboard: says "ready" once its window has the keyboard, and then
// answers each line of standard input with a line:
//   keys    the keys that the window got since the last time, as "press CODE STATE," each
//   grab    "done" once every key goes to the window, whatever else has the keyboard
//   ungrab  "done" once that has ended
//   leave   "done" once no window has the keyboard
//   reserve CODE  "done" once the key, with any modifiers, is this program's in all windows

#include "Platform/Linux/X11/Connection/X11Connection.h"
#include "support/KeyLogWindow.h"

#include <iostream>
#include <string>

namespace {

using kestrova::KeyLogWindow;
using kestrova::XcbPointer;

void printKeys(KeyLogWindow &window)
{
    for (const KeyLogWindow::Key &key : window.keys())
        std::cout << (key.isPress ? "press " : "release ") << int(key.code) << ' ' << key.modifiers
                  << ',';
    std::cout << std::endl;
}

bool isDone(KeyLogWindow &window, xcb_void_cookie_t request)
{
    return XcbPointer<xcb_generic_error_t>(xcb_request_check(window.xcb(), request)) == nullptr;
}

bool reserve(KeyLogWindow &window, xcb_keycode_t key)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(window.xcb())).data->root;
    return isDone(window,
                  xcb_grab_key_checked(window.xcb(), /*owner_events=*/0, root, XCB_MOD_MASK_ANY,
                                       key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
}

bool obey(KeyLogWindow &window, const std::string &command)
{
    if (command == "grab")
        return window.grabKeyboard();
    if (command == "ungrab")
        return isDone(window, xcb_ungrab_keyboard_checked(window.xcb(), XCB_CURRENT_TIME));
    if (command == "leave")
        return isDone(window, xcb_set_input_focus_checked(window.xcb(), XCB_INPUT_FOCUS_NONE,
                                                          XCB_INPUT_FOCUS_NONE, XCB_CURRENT_TIME));
    if (command.starts_with("reserve "))
        return reserve(window, xcb_keycode_t(std::stoi(command.substr(8))));
    return false;
}

} // namespace

int main()
{
    KeyLogWindow window("Mousepad");
    std::cout << "ready" << std::endl;
    for (std::string command; std::getline(std::cin, command);) {
        if (command == "keys")
            printKeys(window);
        else
            std::cout << (obey(window, command) ? "done" : "failed") << std::endl;
    }
}
