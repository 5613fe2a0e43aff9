#pragma once

#include "ViewModels/AppController.h"
#include "Views/Recorder/ShortcutCapture.h"

#include <functional>

namespace kestrova {

/// The sheet in which a window's shortcuts are recorded, one at a time. While it is open, the
/// program's own shortcuts are disarmed, so that none of them starts a dictation. Main thread.
class ShortcutRecorder final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program.")

    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    /// The sheet starts and stops it.
    Q_PROPERTY(kestrova::ShortcutCapture *capture READ capture CONSTANT)

public:
    using Save = std::function<void(const HotkeyShortcut &)>;

    /// The controller outlives this.
    ShortcutRecorder(AppController &controller, const RecorderKeyboard &keyboard);
    /// Arms the shortcuts again if it is open.
    ~ShortcutRecorder() override;

    bool isOpen() const { return m_suspension != nullptr; }
    ShortcutCapture *capture() { return &m_capture; }
    /// Hands the shortcut that the user saves to the callback; nothing when the user cancels. The
    /// recorder of another window is closed.
    void open(Save save);

Q_SIGNALS:
    void isOpenChanged();

private:
    void close();

    AppController &m_controller;
    ShortcutCapture m_capture;
    Save m_save;
    std::shared_ptr<void> m_suspension; ///< of the program's shortcuts, while it is open
};

} // namespace kestrova
