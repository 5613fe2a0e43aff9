#include "Platform/Linux/X11/Keys/X11PresentKeymap.h"

#include "Platform/Linux/X11/Keys/XkbKeymap.h"

namespace kestrova {

X11PresentKeymap::X11PresentKeymap(const QByteArray &displayName)
    : m_events(
          displayName,
          [this](const auto &event) { return isKeymapChange(m_events.connection(), event); },
          [this] { m_translation.reset(); })
{
    selectKeymapChanges(m_events.connection());
}

const X11KeyTranslation &X11PresentKeymap::translation()
{
    // A change that the next key brings about, as of another keyboard, is sent together with it:
    // Qt may have got the one and this connection not yet the other.
    m_events.synchronize();
    if (!m_translation)
        m_translation.emplace(m_events.connection());
    return *m_translation;
}

} // namespace kestrova
