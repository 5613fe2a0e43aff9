#include "support/SelectionManager.h"

namespace kestrova {

SelectionManager::SelectionManager(const QByteArray &selection, const QByteArray &displayName)
    : m_connection(displayName), m_window(xcb_generate_id(m_connection.xcb()))
{
    xcb_create_window(m_connection.xcb(), 0, m_window, m_connection.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(m_connection.xcb(), m_window, m_connection.atom(selection),
                            XCB_CURRENT_TIME);
    waitForServer();
}

void SelectionManager::publish(const QByteArray &property, const QByteArray &bytes)
{
    const xcb_atom_t atom = m_connection.atom(property);
    xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, m_window, atom, atom, 8,
                        static_cast<quint32>(bytes.size()), bytes.constData());
    waitForServer();
}

void SelectionManager::publishNumbers(const QByteArray &property, const QList<quint32> &numbers)
{
    xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, m_window,
                        m_connection.atom(property), XCB_ATOM_CARDINAL, 32,
                        static_cast<quint32>(numbers.size()), numbers.constData());
    waitForServer();
}

void SelectionManager::waitForServer()
{
    // The server answers in order.
    const XcbPointer<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        m_connection.xcb(), xcb_get_input_focus(m_connection.xcb()), nullptr));
}

} // namespace kestrova
