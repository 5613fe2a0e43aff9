#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"

#include <QKeyEvent>
#include <QMetaObject>

#include <limits>

namespace kestrova {

namespace {

struct Grab final : KeyEventMonitoring::Monitor
{
    Grab(std::shared_ptr<X11KeyGrabs> usedGrabs, const QList<HotkeyShortcut> &grabbed)
        : grabs(std::move(usedGrabs)),
          shortcuts(std::make_shared<const QList<HotkeyShortcut>>(grabbed))
    {
    }
    ~Grab() override { grabs->set({}); }
    Q_DISABLE_COPY_MOVE(Grab)

    const std::shared_ptr<X11KeyGrabs> grabs;
    const std::shared_ptr<const QList<HotkeyShortcut>> shortcuts;
};

} // namespace

X11KeyEventMonitoring::X11KeyEventMonitoring(PostedKeys &postedKeys, const QByteArray &displayName)
    : m_postedKeys(postedKeys), m_displayName(displayName), m_keymap(displayName),
      m_ownWindowKeys(postedKeys, m_local, [this](const QKeyEvent &key) { return translated(key); })
{
}

std::optional<KeyEvent> X11KeyEventMonitoring::translated(const QKeyEvent &key)
{
    if (key.nativeScanCode() > std::numeric_limits<xcb_keycode_t>::max())
        return std::nullopt;
    const auto code = xcb_keycode_t(key.nativeScanCode());
    const X11KeyTranslation &translation = m_keymap.translation();
    return key.type() == QEvent::KeyRelease
               ? translation.released(code)
               : translation.pressed(code, uint16_t(key.nativeModifiers()));
}

std::unique_ptr<KeyEventMonitoring::Monitor>
X11KeyEventMonitoring::addGlobalMonitor(KeyEvent::Types types, GlobalHandler handler)
{
    return observe() ? m_global.addObserver(types, std::move(handler)) : nullptr;
}

bool X11KeyEventMonitoring::observe()
{
    if (!m_observer || !m_observer->isOpen()) {
        const auto post = [this](const KeyEvent &event) {
            QMetaObject::invokeMethod(
                &m_mainThread, [this, event] { report(event); }, Qt::QueuedConnection);
        };
        m_observer = std::make_unique<X11KeyObserver>(m_postedKeys, post, m_displayName);
    }
    return m_observer->isOpen();
}

std::unique_ptr<KeyEventMonitoring::Monitor>
X11KeyEventMonitoring::grab(const QList<HotkeyShortcut> &shortcuts)
{
    if (!observe())
        return nullptr;
    if (!m_grabs)
        m_grabs = std::make_shared<X11KeyGrabs>(m_postedKeys, m_displayName);
    auto grabbing = std::make_unique<Grab>(m_grabs, shortcuts);
    m_grabbed = grabbing->shortcuts;
    grabShortcuts();
    return grabbing;
}

void X11KeyEventMonitoring::grabShortcuts()
{
    const auto shortcuts = m_grabbed.lock();
    if (!shortcuts)
        return;
    const X11KeyTranslation &translation = m_keymap.translation();
    std::set<X11KeyCombination> combinations;
    for (const HotkeyShortcut &shortcut : *shortcuts)
        combinations.merge(translation.combinations(shortcut));
    m_grabs->set(std::move(combinations));
}

bool X11KeyEventMonitoring::canType(const HotkeyShortcut &shortcut)
{
    return !m_keymap.translation().combinations(shortcut).empty();
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
        m_observer.reset();
    if (event.type == KeyEvent::keyboardChanged)
        grabShortcuts();
    m_global.call(event);
}

} // namespace kestrova
