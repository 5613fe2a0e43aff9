#pragma once

#include <QtGlobal>

#include <array>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrova {

/// The key presses that we synthesise, so that the observers of keys can tell them from the user's:
/// both look alike, and come some time later. Times are the X server's. Any thread.
class PostedKeys
{
public:
    /// Each sees every press once at the most, and not always: another window may get it.
    enum Observer { ofAllWindows, ofOwnWindows };

    /// Called before the presses are sent; X key codes in the order of sending. Whatever an
    /// earlier call announced is forgotten.
    void announce(const std::vector<quint8> &keyCodes);
    /// Called when the server has processed them: presses from then on are not ours.
    void finish(quint32 time);
    /// Called for each key press that the observer sees: true, once, when it is the next
    /// announced one.
    bool take(Observer observer, quint8 keyCode, quint32 time);

private:
    std::mutex m_mutex;
    std::array<std::vector<quint8>, 2> m_expected; // for each observer; the next one last
    std::optional<quint32> m_end;
};

} // namespace kestrova
