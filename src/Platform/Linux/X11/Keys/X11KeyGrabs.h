#pragma once

#include "Platform/Linux/Keys/PostedKeys.h"
#include "Platform/Linux/X11/Keys/X11KeyTranslation.h"

#include <set>
#include <thread>

namespace kestrova {

/// Passive grabs of key combinations, on a connection of their own: no window gets them, while
/// observers by RECORD do. A press takes the keyboard for as long as a thread needs to give it
/// back, and never for longer than the key is down, whatever becomes of this process: the keyboard
/// is not frozen meanwhile, and the server itself ends such a grab when its key goes up. Ends with
/// the X server.
class X11KeyGrabs
{
public:
    /// Before keys are posted, a grab that a held shortcut has just set off is ended: it would get
    /// them. The posted keys outlive this. An empty name means $DISPLAY.
    explicit X11KeyGrabs(PostedKeys &postedKeys, const QByteArray &displayName = {});
    ~X11KeyGrabs();
    X11KeyGrabs(const X11KeyGrabs &) = delete;
    X11KeyGrabs &operator=(const X11KeyGrabs &) = delete;

    /// Grabs these and no others from the moment when this returns. What another program has
    /// grabbed remains that program's.
    void set(std::set<X11KeyCombination> combinations);

private:
    void run();

    PostedKeys &m_postedKeys;
    const std::shared_ptr<X11Connection> m_connection;
    std::set<X11KeyCombination> m_grabbed;
    std::thread m_thread;
};

} // namespace kestrova
