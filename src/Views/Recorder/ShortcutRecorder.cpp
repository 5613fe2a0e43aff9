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
    m_suspension = m_controller.suspendHotkeys();
    Q_EMIT isOpenChanged();
}

void ShortcutRecorder::close()
{
    if (!isOpen())
        return;
    m_capture.stop();
    m_suspension.reset();
    Q_EMIT isOpenChanged();
}

} // namespace kestrova
