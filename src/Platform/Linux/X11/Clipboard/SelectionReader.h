#pragma once

#include "Platform/Linux/X11/Clipboard/SelectionAtoms.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace kestrova {

/// The requestor's side of the selection protocol (ICCCM 2), on a connection of its own that
/// lasts as long as this object: a hung owner holds up nobody else. Used by one thread.
class SelectionReader
{
public:
    /// An owner that does not answer, or stops in the middle of a large text, is given up after
    /// this time. Living ones answer within milliseconds.
    static constexpr std::chrono::milliseconds answerLimit{1000};
    /// The longest time for a whole text, however steadily it trickles in.
    static constexpr std::chrono::milliseconds wholeLimit{10000};

    /// An empty name means $DISPLAY.
    explicit SelectionReader(const QByteArray &displayName);

    /// The text on CLIPBOARD; none when it holds none, its owner does not answer, or the X
    /// server cannot be reached.
    std::optional<QString> readClipboard();

private:
    using Clock = std::chrono::steady_clock;
    struct Piece
    {
        xcb_atom_t type;
        QByteArray bytes;
    };

    std::optional<QByteArray> readAs(xcb_atom_t target, xcb_timestamp_t time);
    std::optional<QByteArray> readPieces();
    std::optional<Piece> takeProperty();
    template <typename Event, typename Condition>
    bool waitFor(uint8_t type, Condition isWanted);
    XcbPointer<xcb_generic_event_t> nextEvent(Clock::time_point deadline);

    X11Connection m_connection;
    const SelectionAtoms m_atoms;
    const xcb_window_t m_window;
    Clock::time_point m_end;
};

} // namespace kestrova
