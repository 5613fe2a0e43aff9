#pragma once

#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Keys/KeyEventMonitoring.h"
#include "Platform/Windowing.h"

#include <QQmlEngine>
#include <QWindow>

#include <memory>
#include <optional>

namespace kestrova {

/// Where a recorder gets its keys from. Both outlive it.
struct RecorderKeyboard
{
    KeyEventMonitoring &monitoring;
    Windowing &windowing;
};

/// Turns the keys that the user presses into a shortcut, and tells what is still missing. Main
/// thread.
class ShortcutCapture final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program.")

    /// The captured shortcut, else "Waiting for input...".
    Q_PROPERTY(QString displayText READ displayText NOTIFY capturedShortcutChanged)
    Q_PROPERTY(bool isCaptured READ isCaptured NOTIFY capturedShortcutChanged)
    /// What the user should do next.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)

public:
    explicit ShortcutCapture(const RecorderKeyboard &keyboard) : m_keyboard(keyboard) {}

    QString displayText() const;
    bool isCaptured() const { return m_capturedShortcut.has_value(); }
    const std::optional<HotkeyShortcut> &capturedShortcut() const { return m_capturedShortcut; }
    QString message() const { return m_message; }

    /// Captures anew, in place of what went on before. The window, if there is one, comes to the
    /// front and gets all keys while it has the focus; its hiding cancels the capturing.
    Q_INVOKABLE void start(QWindow *window);
    Q_INVOKABLE void stop();
    /// Only while a shortcut is captured.
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();

    /// An event of the keyboard; the monitors call it.
    void handle(const KeyEvent &event);

Q_SIGNALS:
    void capturedShortcutChanged();
    void messageChanged();
    /// The owner stops the capturing.
    void cancelled();
    void saved(const kestrova::HotkeyShortcut &shortcut);

private:
    void takeKeys(QWindow &window);
    void handleKeyDown(const KeyEvent &event);
    void setCapturedShortcut(const std::optional<HotkeyShortcut> &shortcut);
    void setMessage(const QString &message);

    const RecorderKeyboard m_keyboard;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_localMonitor;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_globalMonitor;
    std::unique_ptr<Windowing::KeyboardHold> m_hold;
    QMetaObject::Connection m_windowVisibility;
    std::optional<HotkeyShortcut> m_capturedShortcut;
    QString m_message;
};

} // namespace kestrova
