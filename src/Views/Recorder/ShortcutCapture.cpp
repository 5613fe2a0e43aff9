#include "Views/Recorder/ShortcutCapture.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 escapeKey = 53;
// Command, Shift, Caps Lock, Option, Control on either side. They come as key-downs where the
// keymap makes something else of them.
constexpr quint32 firstModifierKey = 54;
constexpr quint32 lastModifierKey = 62;

bool isModifierKey(quint32 keyCode)
{
    return keyCode >= firstModifierKey && keyCode <= lastModifierKey;
}

} // namespace

QString ShortcutCapture::displayText() const
{
    return m_capturedShortcut ? m_capturedShortcut->displayText() : u"Waiting for input..."_s;
}

void ShortcutCapture::start(QWindow *window)
{
    stop();
    setCapturedShortcut(std::nullopt);
    setMessage(u"Press a key combination now."_s);
    if (window)
        takeKeys(*window);
    constexpr KeyEvent::Types types = KeyEvent::keyDown | KeyEvent::flagsChanged;
    m_localMonitor = m_keyboard.monitoring.addLocalMonitor(types, [this](const KeyEvent &event) {
        handle(event);
        return true;
    });
    m_globalMonitor = m_keyboard.monitoring.addGlobalMonitor(
        types, [this](const KeyEvent &event) { handle(event); });
}

void ShortcutCapture::takeKeys(QWindow &window)
{
    window.raise();
    window.requestActivate();
    m_hold = m_keyboard.windowing.holdKeyboard(window);
    m_windowVisibility = connect(&window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            cancel();
    });
}

void ShortcutCapture::stop()
{
    m_localMonitor.reset();
    m_globalMonitor.reset();
    m_hold.reset();
    disconnect(m_windowVisibility);
}

void ShortcutCapture::save()
{
    if (m_capturedShortcut)
        Q_EMIT saved(*m_capturedShortcut);
}

void ShortcutCapture::cancel()
{
    Q_EMIT cancelled();
}

void ShortcutCapture::handle(const KeyEvent &event)
{
    if (m_hold)
        m_hold->renew();
    if (event.type == KeyEvent::flagsChanged) {
        setMessage(u"Press a non-modifier key while holding your modifiers."_s);
        return;
    }
    if (!event.isRepeat)
        handleKeyDown(event);
}

void ShortcutCapture::handleKeyDown(const KeyEvent &event)
{
    const quint32 modifiers = event.modifiers & HotkeyShortcut::allModifiers;
    if (event.keyCode == escapeKey) {
        cancel();
    } else if (isModifierKey(event.keyCode)) {
        setMessage(u"Press a non-modifier key to complete the shortcut."_s);
    } else if (modifiers == 0) {
        setCapturedShortcut(std::nullopt);
        setMessage(u"Add at least one modifier key."_s);
    } else {
        setCapturedShortcut(HotkeyShortcut{event.keyCode, modifiers});
        setMessage(u"Shortcut captured. Press Save to apply."_s);
    }
}

void ShortcutCapture::setCapturedShortcut(const std::optional<HotkeyShortcut> &shortcut)
{
    if (shortcut == m_capturedShortcut)
        return;
    m_capturedShortcut = shortcut;
    Q_EMIT capturedShortcutChanged();
}

void ShortcutCapture::setMessage(const QString &message)
{
    if (message == m_message)
        return;
    m_message = message;
    Q_EMIT messageChanged();
}

} // namespace kestrova
