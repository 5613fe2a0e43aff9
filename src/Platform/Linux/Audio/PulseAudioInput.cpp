#include "Platform/Linux/Audio/PulseAudioInput.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Audio/PulseAudioRecorder.h"

#include <mutex>

namespace kestrova {

using namespace Qt::StringLiterals;

std::unique_ptr<AudioRecorder> PulseAudioInput::makeRecorder(const QUrl &fileURL,
                                                             const RecordingFormat &format)
{
    if (!fileURL.isLocalFile())
        throw PlatformError(u"Audio cannot be recorded to \"%1\": it is not a local file."_s.arg(
            fileURL.toDisplayString()));
    if (format != RecordingFormat{})
        throw PlatformError(u"Audio is recorded as 16 kHz mono 16-bit integer PCM only."_s);
    return std::make_unique<PulseAudioRecorder>(m_connection, m_news, fileURL, format);
}

MicrophoneCondition PulseAudioInput::listen(AudioInputListener listener)
{
    return m_news.listen(std::move(listener));
}

void PulseAudioInput::reconnect()
{
    const std::lock_guard lock(m_connection);
    m_connection.connectUnlessGood(PA_CONTEXT_NOAUTOSPAWN);
}

} // namespace kestrova
