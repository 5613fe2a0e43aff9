// Shows ordinary windows until it is ended: WindowApplication INSTANCE CLASS COUNT. Writes the
// window ids to standard output, one in a line.

#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char **argv)
{
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    if (argc != 4 || xcb_connection_has_error(connection))
        return EXIT_FAILURE;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const std::string windowClass = std::string(argv[1]) + '\0' + argv[2] + '\0';

    for (int number = 0; number < std::atoi(argv[3]); ++number) {
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 200, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, static_cast<uint32_t>(windowClass.size()),
                            windowClass.data());
        xcb_map_window(connection, window);
        std::printf("%u\n", window);
    }
    std::fflush(stdout);
    xcb_flush(connection);
    while (xcb_generic_event_t *const event = xcb_wait_for_event(connection))
        std::free(event);
    return EXIT_SUCCESS;
}
