#include "support/SelectionClient.h"

#include "Platform/Linux/X11/Connection/X11Connection.h"

#include <chrono>
#include <stdexcept>

#include <poll.h>

namespace kestrova {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds limit{10};
constexpr char answerProperty[] = "TEST_ANSWER";

} // namespace

SelectionClient::SelectionClient(const QByteArray &displayName)
    : m_connection(xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), nullptr)),
      m_window(xcb_generate_id(m_connection))
{
    if (xcb_connection_has_error(m_connection))
        throw std::runtime_error("no X server");
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    constexpr uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, 0, m_window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

SelectionClient::~SelectionClient()
{
    xcb_disconnect(m_connection);
}

xcb_atom_t SelectionClient::atom(const QByteArray &name)
{
    const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.constData()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray SelectionClient::atomName(xcb_atom_t atom)
{
    const XcbPointer<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr));
    return reply ? QByteArray(xcb_get_atom_name_name(reply.get()), reply->name_len) : QByteArray();
}

template <typename Event>
Event SelectionClient::waitFor(uint8_t type, const std::function<bool(const Event &)> &isWanted)
{
    xcb_flush(m_connection);
    const auto end = Clock::now() + limit;
    while (Clock::now() < end && !xcb_connection_has_error(m_connection)) {
        if (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
            const auto &candidate = *reinterpret_cast<const Event *>(event.get());
            if ((event->response_type & 0x7f) == type && isWanted(candidate))
                return candidate;
            continue;
        }
        pollfd socket{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        poll(&socket, 1, 100);
    }
    throw std::runtime_error("the awaited event did not come");
}

xcb_timestamp_t SelectionClient::time()
{
    const xcb_atom_t property = atom("TEST_TIME");
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_window, property, XCB_ATOM_STRING, 8,
                        0, nullptr);
    return waitFor<xcb_property_notify_event_t>(
               XCB_PROPERTY_NOTIFY, [&](const auto &event) { return event.atom == property; })
        .time;
}

bool SelectionClient::ask(const QByteArray &selection, const QByteArray &target,
                          const QByteArray &property, xcb_timestamp_t time)
{
    xcb_convert_selection(m_connection, m_window, atom(selection), atom(target), atom(property),
                          time);
    return waitFor<xcb_selection_notify_event_t>(XCB_SELECTION_NOTIFY, [](const auto &) {
               return true;
           }).property != XCB_ATOM_NONE;
}

std::optional<SelectionClient::Value> SelectionClient::take(const QByteArray &property)
{
    const XcbPointer<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection,
                               xcb_get_property(m_connection, 1, m_window, atom(property),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, UINT32_MAX / 4),
                               nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return std::nullopt;
    return Value{atomName(reply->type),
                 QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                            xcb_get_property_value_length(reply.get()))};
}

std::optional<QByteArray> SelectionClient::takePieces(const QByteArray &property)
{
    const xcb_atom_t wanted = atom(property);
    QByteArray bytes;
    for (;;) {
        waitFor<xcb_property_notify_event_t>(XCB_PROPERTY_NOTIFY, [&](const auto &event) {
            return event.atom == wanted && event.state == XCB_PROPERTY_NEW_VALUE;
        });
        const std::optional<Value> piece = take(property);
        if (!piece)
            return std::nullopt;
        if (piece->bytes.isEmpty())
            return bytes;
        bytes += piece->bytes;
    }
}

std::optional<SelectionClient::Value>
SelectionClient::read(const QByteArray &selection, const QByteArray &target, xcb_timestamp_t time)
{
    if (!ask(selection, target, answerProperty, time))
        return std::nullopt;
    std::optional<Value> value = take(answerProperty);
    if (!value || value->type != "INCR")
        return value;
    const std::optional<QByteArray> bytes = takePieces(answerProperty);
    return bytes ? std::optional(Value{target, *bytes}) : std::nullopt;
}

std::vector<QByteArray> SelectionClient::targets(const QByteArray &selection)
{
    return ask(selection, "TARGETS", answerProperty) ? takeAtoms(answerProperty)
                                                     : std::vector<QByteArray>();
}

void SelectionClient::setAtoms(const QByteArray &property, const QByteArray &type,
                               const std::vector<QByteArray> &names)
{
    std::vector<xcb_atom_t> atoms;
    for (const QByteArray &name : names)
        atoms.push_back(atom(name));
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, atom(property), atom(type),
                        32, uint32_t(atoms.size()), atoms.data());
}

std::vector<QByteArray> SelectionClient::takeAtoms(const QByteArray &property)
{
    const std::optional<Value> value = take(property);
    std::vector<QByteArray> names;
    if (value) {
        const auto *atoms = reinterpret_cast<const xcb_atom_t *>(value->bytes.constData());
        for (qsizetype i = 0; i < value->bytes.size() / 4; ++i)
            names.push_back(atomName(atoms[i]));
    }
    return names;
}

void SelectionClient::own(const QByteArray &selection)
{
    xcb_set_selection_owner(m_connection, m_window, atom(selection), time());
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, atom(selection)), nullptr));
    if (!reply || reply->owner != m_window)
        throw std::runtime_error("the server did not hand the selection over");
}

void SelectionClient::waitForLoss()
{
    waitFor<xcb_selection_clear_event_t>(XCB_SELECTION_CLEAR, [](const auto &) { return true; });
}

xcb_selection_request_event_t SelectionClient::waitForRequest()
{
    return waitFor<xcb_selection_request_event_t>(XCB_SELECTION_REQUEST,
                                                  [](const auto &) { return true; });
}

void SelectionClient::change(xcb_window_t window, xcb_atom_t property, const Value &value)
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, atom(value.type), 8,
                        uint32_t(value.bytes.size()), value.bytes.constData());
}

void SelectionClient::answer(const xcb_selection_request_event_t &request, const Value &value)
{
    if (!value.type.isEmpty())
        change(request.requestor, request.property, value);
    alignas(xcb_selection_notify_event_t) char event[32] = {};
    auto &notify = reinterpret_cast<xcb_selection_notify_event_t &>(event);
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = value.type.isEmpty() ? xcb_atom_t(XCB_ATOM_NONE) : request.property;
    xcb_send_event(m_connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, event);
    xcb_flush(m_connection);
}

void SelectionClient::answerInPieces(const xcb_selection_request_event_t &request,
                                     const Value &value, qsizetype pieceSize, int pieceLimit)
{
    constexpr uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection, request.requestor, XCB_CW_EVENT_MASK, &events);
    answer(request, {"INCR", QByteArray(4, '\0')});
    for (qsizetype sent = 0; pieceLimit > 0; --pieceLimit, sent += pieceSize) {
        waitFor<xcb_property_notify_event_t>(XCB_PROPERTY_NOTIFY, [&](const auto &event) {
            return event.window == request.requestor && event.atom == request.property &&
                   event.state == XCB_PROPERTY_DELETE;
        });
        const QByteArray piece = value.bytes.mid(sent, pieceSize);
        change(request.requestor, request.property, {value.type, piece});
        xcb_flush(m_connection);
        if (piece.isEmpty())
            return;
    }
}

} // namespace kestrova
