#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <functional>
#include <optional>
#include <vector>

namespace kestrova {

/// Another application that takes part in the selection protocol, without any of the code under
/// test. Used on one thread. What waits gives up after ten seconds by std::runtime_error.
class SelectionClient
{
public:
    struct Value
    {
        QByteArray type; ///< the atom's name
        QByteArray bytes;
    };

    explicit SelectionClient(const QByteArray &displayName = {});
    ~SelectionClient();
    SelectionClient(const SelectionClient &) = delete;
    SelectionClient &operator=(const SelectionClient &) = delete;

    xcb_atom_t atom(const QByteArray &name);
    /// The server's present time.
    xcb_timestamp_t time();

    /// Asks and takes the whole value, in pieces if need be; none when it was refused.
    std::optional<Value> read(const QByteArray &selection, const QByteArray &target,
                              xcb_timestamp_t time = XCB_CURRENT_TIME);
    /// The names in the TARGETS of the selection.
    std::vector<QByteArray> targets(const QByteArray &selection);

    /// Asks and waits for the answer: whether it was converted into the property.
    bool ask(const QByteArray &selection, const QByteArray &target, const QByteArray &property,
             xcb_timestamp_t time = XCB_CURRENT_TIME);
    /// The property's value, which is deleted: the owner of a large one then sends on.
    std::optional<Value> take(const QByteArray &property);
    /// The pieces that follow once INCR was taken.
    std::optional<QByteArray> takePieces(const QByteArray &property);

    void setAtoms(const QByteArray &property, const QByteArray &type,
                  const std::vector<QByteArray> &names);
    std::vector<QByteArray> takeAtoms(const QByteArray &property);

    /// Takes the selection over, and waits until the server says so.
    void own(const QByteArray &selection);
    /// Waits until another client owns the selection.
    void waitForLoss();
    xcb_selection_request_event_t waitForRequest();
    /// Answers with the value; one without a type is refused.
    void answer(const xcb_selection_request_event_t &request, const Value &value);
    /// Answers in pieces; it sends only so many of them when a limit is given.
    void answerInPieces(const xcb_selection_request_event_t &request, const Value &value,
                        qsizetype pieceSize, int pieceLimit = INT32_MAX);

private:
    template <typename Event>
    Event waitFor(uint8_t type, const std::function<bool(const Event &)> &isWanted);
    QByteArray atomName(xcb_atom_t atom);
    void change(xcb_window_t window, xcb_atom_t property, const Value &value);

    xcb_connection_t *m_connection;
    xcb_window_t m_window;
};

} // namespace kestrova
