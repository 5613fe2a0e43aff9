#include "Platform/Linux/X11/X11ClientProcess.h"

#include <xcb/res.h>

namespace kestrova {

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

} // namespace kestrova
