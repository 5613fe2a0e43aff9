#include "Services/Dictation/RestartingCapture.h"

namespace kestrova {

RestartingCapture::RestartingCapture(std::shared_ptr<AudioCapturing> capture)
    : m_capture(std::move(capture))
{
}

void RestartingCapture::startRecording()
{
    if (m_capture->isRecording()) {
        const AudioRecording forgotten = m_capture->stopRecording();
        qWarning("A recording was under way that nobody waits for. It is kept in \"%s\".",
                 qUtf8Printable(forgotten.fileURL.toLocalFile()));
    }
    m_capture->startRecording();
}

} // namespace kestrova
