#include "Platform/Linux/X11/X11KeyEventMonitoring.h"

#include "Platform/Linux/X11/X11WithheldKeys.h"

#include <QMetaObject>

namespace kestrova {

X11KeyEventMonitoring::X11KeyEventMonitoring(X11Connection &connection, PostedKeys &postedKeys,
                                             const QByteArray &displayName)
    : m_postedKeys(postedKeys), m_displayName(displayName),
      m_filter(connection, postedKeys, m_local)
{
}

std::unique_ptr<KeyEventMonitoring::Monitor>
X11KeyEventMonitoring::addGlobalMonitor(KeyEvent::Types types, GlobalHandler handler)
{
    return record() ? m_global.addObserver(types, std::move(handler)) : nullptr;
}

bool X11KeyEventMonitoring::record()
{
    if (!m_recording || !m_recording->isOpen()) {
        const auto post = [this](const KeyEvent &event) {
            QMetaObject::invokeMethod(
                &m_mainThread, [this, event] { report(event); }, Qt::QueuedConnection);
        };
        m_recording = std::make_unique<X11KeyRecording>(m_postedKeys, post, m_displayName);
    }
    return m_recording->isOpen();
}

std::unique_ptr<KeyEventMonitoring::Monitor>
X11KeyEventMonitoring::withhold(const QList<HotkeyShortcut> &shortcuts)
{
    return record() ? std::make_unique<X11WithheldKeys>(shortcuts, m_displayName) : nullptr;
}

std::unique_ptr<KeyEventMonitoring::Monitor>
X11KeyEventMonitoring::addLocalMonitor(KeyEvent::Types types, LocalHandler handler)
{
    return m_local.add(types, std::move(handler));
}

void X11KeyEventMonitoring::report(const KeyEvent &event)
{
    // Not as soon as the last monitor ends: replacing the bindings ends one and adds the next.
    if (m_global.count() == 0)
        m_recording.reset();
    m_global.call(event);
}

} // namespace kestrova
