#pragma once

#include <QtGlobal>

#include <array>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace kestrova {

/// The keys that we synthesise, so that the observers of keys can tell them from the user's: both
/// look alike, and come some time later. Times are the X server's. Any thread.
class PostedKeys
{
public:
    /// Each sees every event once at the most, and not always: another window may get it.
    enum Observer { ofAllWindows, ofOwnWindows };
    struct Event
    {
        bool isPress;
        quint32 keyCode; ///< of XKB, as QKeyEvent::nativeScanCode() has it

        bool operator==(const Event &) const = default;
    };

    /// What prepare() does, on its thread; nothing when it is null.
    void setPreparation(std::function<void()> preparation);
    /// Called before it is examined whether keys can be sent. May wait for other connections.
    void prepare();
    /// Called before the events are sent, in the order of sending. Whatever an earlier call
    /// announced is forgotten.
    void announce(const std::vector<Event> &events);
    /// Called when the server has processed them: events from then on are not ours.
    void finish(quint32 time);
    /// Called for each event that the observer sees: true, once, when it is the next announced one.
    bool take(Observer observer, const Event &event, quint32 time);

private:
    std::mutex m_mutex;
    std::function<void()> m_preparation;
    std::array<std::vector<Event>, 2> m_expected; // for each observer; the next one last
    std::optional<quint32> m_end;
};

} // namespace kestrova
