/*
 * Opens a window as a program without toolkit would, and without _NET_WM_PID:
 *
 *     ky_x11_window [--inside HANDLE] [--override-redirect] [TYPE]...
 *
 * The window holds another one. It lies in the window HANDLE instead of the root window, and its
 * _NET_WM_WINDOW_TYPE are the TYPEs, names of atoms, when there are any. Prints "window HANDLE" and runs
 * until its input ends.
 */

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <xcb/xcb.h>

static xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(connection, false, std::uint16_t(std::strlen(name)), name);
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t value = reply ? reply->atom : xcb_atom_t(XCB_NONE);
    std::free(reply);
    return value;
}

static xcb_window_t openWindow(xcb_connection_t *connection, xcb_window_t parent, bool overrideRedirect)
{
    const std::uint32_t override = overrideRedirect;
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, parent, 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &override);
    return window;
}

int main(int argc, char **argv)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return 1;

    xcb_window_t parent = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    bool overrideRedirect = false;
    std::vector<xcb_atom_t> types;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--inside") && i + 1 < argc)
            parent = xcb_window_t(std::strtoul(argv[++i], nullptr, 10));
        else if (!std::strcmp(argv[i], "--override-redirect"))
            overrideRedirect = true;
        else
            types.push_back(atom(connection, argv[i]));
    }

    const xcb_window_t window = openWindow(connection, parent, overrideRedirect);
    const xcb_window_t part = openWindow(connection, window, false);
    if (!types.empty())
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
                            atom(connection, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32,
                            std::uint32_t(types.size()), types.data());
    xcb_map_window(connection, part);
    xcb_map_window(connection, window);
    // The server answers when it has done all that.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));

    std::printf("window %u\n", window);
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    xcb_disconnect(connection);
    return 0;
}
