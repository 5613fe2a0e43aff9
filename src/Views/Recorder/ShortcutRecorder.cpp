#include "Views/Recorder/ShortcutRecorder.h"

#include <QPointer>

namespace kestrova {

namespace {

/// Of all windows: two would take each other's keys.
QPointer<ShortcutRecorder> openRecorder;

} // namespace

ShortcutRecorder::ShortcutRecorder(AppController &controller, const RecorderKeyboard &keyboard)
    : m_controller(controller), m_capture(keyboard)
{
    connect(&m_capture, &ShortcutCapture::cancelled, this, &ShortcutRecorder::close);
    connect(&m_capture, &ShortcutCapture::saved, this, [this](const HotkeyShortcut &shortcut) {
        m_save(shortcut);
        close();
    });
    // Each change of the settings arms the shortcuts anew, also one in another window.
    connect(
        &controller.appState(), &AppState::settingsChanged, this,
        [this] {
            if (m_isOpen)
                m_controller.unregisterHotkeys();
        },
        Qt::QueuedConnection);
}

ShortcutRecorder::~ShortcutRecorder()
{
    close();
}

void ShortcutRecorder::open(Save save)
{
    if (openRecorder)
        openRecorder->close();
    openRecorder = this;
    m_save = std::move(save);
    m_controller.unregisterHotkeys();
    m_isOpen = true;
    Q_EMIT isOpenChanged();
}

void ShortcutRecorder::close()
{
    if (!m_isOpen)
        return;
    m_isOpen = false;
    m_capture.stop();
    m_controller.registerHotkeys();
    Q_EMIT isOpenChanged();
}

} // namespace kestrova
