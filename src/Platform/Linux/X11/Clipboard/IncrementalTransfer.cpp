#include "Platform/Linux/X11/Clipboard/IncrementalTransfer.h"

#include <algorithm>

namespace kestrova {

IncrementalTransfer::IncrementalTransfer(xcb_connection_t *connection, xcb_window_t requestor,
                                         xcb_atom_t property, xcb_atom_t type,
                                         const QByteArray &bytes, xcb_atom_t incr,
                                         uint32_t pieceSize)
    : m_connection(connection), m_requestor(requestor), m_property(property), m_type(type),
      m_bytes(bytes), m_pieceSize(pieceSize), m_deadline(Clock::now() + stallLimit)
{
    const auto size = uint32_t(std::min<qsizetype>(bytes.size(), INT32_MAX));
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, requestor, property, incr, 32, 1, &size);
}

void IncrementalTransfer::sendNext()
{
    const auto size = uint32_t(std::min<qsizetype>(m_bytes.size() - m_sent, m_pieceSize));
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_requestor, m_property, m_type, 8,
                        size, m_bytes.constData() + m_sent);
    m_sent += size;
    m_isFinished = size == 0;
    m_deadline = Clock::now() + stallLimit;
}

} // namespace kestrova
