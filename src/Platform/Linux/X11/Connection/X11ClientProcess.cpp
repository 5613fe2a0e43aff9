#include "Platform/Linux/X11/Connection/X11ClientProcess.h"

#include "Platform/Linux/Applications/ProcessStatus.h"

#include <QSysInfo>

#include <xcb/res.h>

namespace kestrova {

namespace {

/// What all the windows of one client have in common.
uint32_t clientOf(X11Connection &connection, xcb_window_t window)
{
    return window & ~xcb_get_setup(connection.xcb())->resource_id_mask;
}

} // namespace

qint32 clientProcess(X11Connection &connection, xcb_window_t window)
{
    if (!connection.hasExtension(&xcb_res_id))
        return 0;
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const XcbPointer<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        connection.xcb(), xcb_res_query_client_ids(connection.xcb(), 1, &wanted), nullptr));
    if (!reply)
        return 0;
    const auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    if (ids.rem == 0 || xcb_res_client_id_value_value_length(ids.data) == 0)
        return 0;
    return static_cast<qint32>(*xcb_res_client_id_value_value(ids.data));
}

qint32 windowProcess(X11Connection &connection, xcb_window_t window)
{
    // A client that has forked since it connected is known by the process that has ended.
    const qint32 client = clientProcess(connection, window);
    if (processStatus(client))
        return client;
    const QString machine = connection.text(window, "WM_CLIENT_MACHINE");
    if (!machine.isEmpty() && machine != QSysInfo::machineHostName())
        return 0;
    const auto claimed = static_cast<qint32>(connection.value(window, "_NET_WM_PID"));
    return processStatus(claimed) ? claimed : 0;
}

qint32 requestorProcess(X11Connection &connection, xcb_window_t requestor)
{
    if (const qint32 process = windowProcess(connection, requestor))
        return process;
    for (const xcb_window_t window : connection.values(connection.root(), "_NET_CLIENT_LIST")) {
        if (clientOf(connection, window) != clientOf(connection, requestor))
            continue;
        if (const qint32 process = windowProcess(connection, window))
            return process;
    }
    return 0;
}

} // namespace kestrova
