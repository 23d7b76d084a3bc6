#include "KyWindowControl.h"

#include <QVector>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>

#include <xcb/res.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace Kyte {

struct FreeMemory
{
    void operator()(void *memory) const
    {
        std::free(memory);
    }
};

/** A reply of the X server; null after an error, as with a window that is gone by now. */
template<typename T>
using Reply = std::unique_ptr<T, FreeMemory>;

using Windows = QVector<xcb_window_t>;

/**
 * One look at the windows of one process. Requests go out in bulk before the first reply is awaited, so that
 * a search takes a handful of round trips, however many windows there are.
 */
class WindowSearch
{
    Q_DISABLE_COPY(WindowSearch)

public:
    explicit WindowSearch(quint32 processId);
    ~WindowSearch();

    xcb_window_t find(bool mainWindowOnly);

private:
    void findClients();
    bool hasWindowManager(int screen);
    Windows managedWindows(int screen);
    Windows unmanagedWindows(xcb_window_t root);
    Windows takeWindowsOfProcess(Windows *windows);
    Windows childrenOf(const Windows &windows);
    bool isMapped(xcb_window_t window);
    bool isMainWindow(xcb_window_t window);
    bool isMainWindowType(const xcb_ewmh_get_atoms_reply_t &types) const;

    const quint32 m_processId;
    xcb_connection_t *m_connection = nullptr; // owned
    xcb_ewmh_connection_t m_ewmh = {};
    bool m_isReady = false;
    quint32 m_clientBits = 0; // of a window's id, the part that all windows of one connection share
    QVector<quint32> m_clients; // those parts of the process's connections
};

WindowSearch::WindowSearch(quint32 processId)
    : m_processId(processId)
    , m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection)) // it is an object all the same
        return;
    m_clientBits = ~xcb_get_setup(m_connection)->resource_id_mask;
    // When this fails it releases m_ewmh itself.
    m_isReady = xcb_ewmh_init_atoms_replies(&m_ewmh, xcb_ewmh_init_atoms(m_connection, &m_ewmh), nullptr);
    if (m_isReady)
        findClients();
}

WindowSearch::~WindowSearch()
{
    if (m_isReady)
        xcb_ewmh_connection_wipe(&m_ewmh);
    xcb_disconnect(m_connection);
}

xcb_window_t WindowSearch::find(bool mainWindowOnly)
{
    if (!m_isReady)
        return XCB_NONE;

    Windows windows;
    for (int screen = 0; screen < m_ewmh.nb_screens; ++screen)
        windows += hasWindowManager(screen) ? managedWindows(screen)
                                            : unmanagedWindows(m_ewmh.screens[screen]->root);

    for (xcb_window_t window : qAsConst(windows)) {
        if (isMainWindow(window))
            return window;
    }
    return mainWindowOnly || windows.isEmpty() ? xcb_window_t(XCB_NONE) : windows.first();
}

/** The server knows the process behind each connection, and so whose the windows without _NET_WM_PID are. */
void WindowSearch::findClients()
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(m_connection, &xcb_res_id);
    if (!extension || !extension->present)
        return;

    const xcb_res_client_id_spec_t everyClient = {XCB_NONE, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        m_connection, xcb_res_query_client_ids(m_connection, 1, &everyClient), nullptr));
    if (!reply)
        return;

    for (auto it = xcb_res_query_client_ids_ids_iterator(reply.get()); it.rem;
         xcb_res_client_id_value_next(&it)) {
        if (xcb_res_client_id_value_value_length(it.data) > 0
            && *xcb_res_client_id_value_value(it.data) == m_processId)
            m_clients.append(it.data->spec.client);
    }
}

/** A window manager that has ended leaves its list of windows behind, but not the window that vouches for it.
 */
bool WindowSearch::hasWindowManager(int screen)
{
    xcb_window_t window = m_ewmh.screens[screen]->root;
    xcb_window_t confirmed = XCB_NONE;
    return xcb_ewmh_get_supporting_wm_check_reply(&m_ewmh, xcb_ewmh_get_supporting_wm_check(&m_ewmh, window),
                                                  &window, nullptr)
        && xcb_ewmh_get_supporting_wm_check_reply(&m_ewmh, xcb_ewmh_get_supporting_wm_check(&m_ewmh, window),
                                                  &confirmed, nullptr)
        && confirmed == window;
}

/** What the window manager lists is shown, minimised windows and those of other desktops included. */
Windows WindowSearch::managedWindows(int screen)
{
    xcb_ewmh_get_windows_reply_t list;
    if (!xcb_ewmh_get_client_list_reply(&m_ewmh, xcb_ewmh_get_client_list(&m_ewmh, screen), &list, nullptr))
        return Windows();
    Windows windows;
    for (quint32 i = 0; i < list.windows_len; ++i)
        windows.append(list.windows[i]);
    xcb_ewmh_get_windows_reply_wipe(&list);
    return takeWindowsOfProcess(&windows);
}

/** The mapped windows without a window manager, or inside the frames of one that keeps no list. */
Windows WindowSearch::unmanagedWindows(xcb_window_t root)
{
    Windows found;
    for (Windows level = childrenOf({root}); !level.isEmpty();) {
        const Windows own = takeWindowsOfProcess(&level);
        std::copy_if(own.begin(), own.end(), std::back_inserter(found), [this](xcb_window_t window) {
            return isMapped(window);
        });
        // Not into the process's own windows: what they hold are parts of them.
        level = childrenOf(level);
    }
    return found;
}

/** Moves the windows of the process from \a windows into the result. */
Windows WindowSearch::takeWindowsOfProcess(Windows *windows)
{
    QVector<xcb_get_property_cookie_t> cookies;
    for (xcb_window_t window : qAsConst(*windows))
        cookies.append(xcb_ewmh_get_wm_pid(&m_ewmh, window));

    Windows own;
    Windows others;
    for (int i = 0; i < windows->size(); ++i) {
        const xcb_window_t window = windows->at(i);
        quint32 processId = 0;
        const bool isTold = xcb_ewmh_get_wm_pid_reply(&m_ewmh, cookies.at(i), &processId, nullptr);
        const bool isOwn = isTold ? processId == m_processId : m_clients.contains(window & m_clientBits);
        (isOwn ? own : others).append(window);
    }
    *windows = others;
    return own;
}

Windows WindowSearch::childrenOf(const Windows &windows)
{
    QVector<xcb_query_tree_cookie_t> cookies;
    for (xcb_window_t window : windows)
        cookies.append(xcb_query_tree(m_connection, window));

    Windows children;
    for (xcb_query_tree_cookie_t cookie : qAsConst(cookies)) {
        const Reply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(m_connection, cookie, nullptr));
        for (int i = 0; reply && i < xcb_query_tree_children_length(reply.get()); ++i)
            children.append(xcb_query_tree_children(reply.get())[i]);
    }
    return children;
}

/** Menus and tool tips keep out of a window manager's hands by override-redirect; they do not count. */
bool WindowSearch::isMapped(xcb_window_t window)
{
    const Reply<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
    return reply && reply->map_state != XCB_MAP_STATE_UNMAPPED && !reply->override_redirect;
}

bool WindowSearch::isMainWindow(xcb_window_t window)
{
    const xcb_get_property_cookie_t owner = xcb_get_property(
        m_connection, false, window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_GET_PROPERTY_TYPE_ANY, 0, 0);
    const xcb_get_property_cookie_t type = xcb_ewmh_get_wm_window_type(&m_ewmh, window);

    const Reply<xcb_get_property_reply_t> ownerReply(xcb_get_property_reply(m_connection, owner, nullptr));
    xcb_ewmh_get_atoms_reply_t types;
    bool isMain = ownerReply && ownerReply->type == XCB_NONE;
    if (xcb_ewmh_get_wm_window_type_reply(&m_ewmh, type, &types, nullptr)) {
        isMain = isMain && isMainWindowType(types);
        xcb_ewmh_get_atoms_reply_wipe(&types);
    }
    return isMain;
}

/** The list begins with the type that suits best; types that are not of the standard say nothing. */
bool WindowSearch::isMainWindowType(const xcb_ewmh_get_atoms_reply_t &types) const
{
    const xcb_atom_t minorTypes[] = {
        m_ewmh._NET_WM_WINDOW_TYPE_DESKTOP,       m_ewmh._NET_WM_WINDOW_TYPE_DOCK,
        m_ewmh._NET_WM_WINDOW_TYPE_TOOLBAR,       m_ewmh._NET_WM_WINDOW_TYPE_MENU,
        m_ewmh._NET_WM_WINDOW_TYPE_UTILITY,       m_ewmh._NET_WM_WINDOW_TYPE_SPLASH,
        m_ewmh._NET_WM_WINDOW_TYPE_DROPDOWN_MENU, m_ewmh._NET_WM_WINDOW_TYPE_POPUP_MENU,
        m_ewmh._NET_WM_WINDOW_TYPE_TOOLTIP,       m_ewmh._NET_WM_WINDOW_TYPE_NOTIFICATION,
        m_ewmh._NET_WM_WINDOW_TYPE_COMBO,         m_ewmh._NET_WM_WINDOW_TYPE_DND,
    };
    for (quint32 i = 0; i < types.atoms_len; ++i) {
        const xcb_atom_t type = types.atoms[i];
        if (type == m_ewmh._NET_WM_WINDOW_TYPE_NORMAL || type == m_ewmh._NET_WM_WINDOW_TYPE_DIALOG)
            return true;
        if (std::find(std::begin(minorTypes), std::end(minorTypes), type) != std::end(minorTypes))
            return false;
    }
    return true;
}

quint64 KyWindowControl::getWindowHandle(PROCESS_INFORMATION *process, bool mainWindowOnly)
{
    if (!process || process->dwProcessId <= 0 || process->dwProcessId > std::numeric_limits<quint32>::max())
        return 0;
    return WindowSearch(quint32(process->dwProcessId)).find(mainWindowOnly);
}

} // namespace Kyte
