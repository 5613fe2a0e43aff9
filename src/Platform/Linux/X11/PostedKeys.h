#pragma once

#include <QtGlobal>

#include <mutex>
#include <vector>

namespace kestrova {

/// The key presses that we are about to synthesise, so that an observer of all keys can tell
/// them from the user's: observers see both alike, and some time later. Any thread.
class PostedKeys
{
public:
    /// Called before the presses are sent; X key codes in the order of sending. Whatever an
    /// earlier call announced is forgotten.
    void announce(const std::vector<quint8> &keyCodes);
    /// Called for each key press that is observed: true, once, when it is the next announced one.
    bool take(quint8 keyCode);

private:
    std::mutex m_mutex;
    std::vector<quint8> m_expected; // the next one last
};

} // namespace kestrova
