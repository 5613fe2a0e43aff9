#pragma once

#include "Platform/Audio/AudioInputNews.h"
#include "Platform/Audio/AudioRecorder.h"
#include "Platform/Linux/Audio/PulseAudioConnection.h"
#include "Platform/Linux/Audio/WavFile.h"

#include <atomic>

namespace kestrova {

/// One recording through the sound server: a stream of its own, written to the file as it comes
/// in, on the connection's thread. Records once: after its end it cannot be started again.
class PulseAudioRecorder final : public AudioRecorder
{
public:
    /// The connection and the news outlive the recorder. The address is a local file's; the format
    /// is one of 16-bit little-endian integers.
    PulseAudioRecorder(PulseAudioConnection &connection, AudioInputNews &news, const QUrl &fileURL,
                       const RecordingFormat &format);
    ~PulseAudioRecorder() override;
    PulseAudioRecorder(const PulseAudioRecorder &) = delete;
    PulseAudioRecorder &operator=(const PulseAudioRecorder &) = delete;

    /// Does nothing: no level is ever measured.
    void setMeteringEnabled(bool enabled) override;
    /// Creates the file; the connection is being made anyway.
    bool prepareToRecord() override;
    /// Blocks until the server has begun to record or refused, for three seconds at most.
    bool record() override;
    /// Blocks for a quarter of a second at most, also when the server hangs.
    void stop() override;

    bool isRecording() const override { return m_isRecording; }
    QUrl url() const override { return m_fileURL; }
    double currentTime() const override;

private:
    struct Release
    {
        void operator()(pa_stream *stream) const;
    };

    bool start();
    void discardFile();

    // All of these with the connection's lock held.
    bool openStream(const std::string &source, PulseAudioConnection::TimePoint deadline);
    void stateChanged();
    void takeAvailable();
    void moved();
    void drain();
    void end(RecordingProblem problem);

    PulseAudioConnection &m_connection;
    AudioInputNews &m_news;
    const QUrl m_fileURL;
    const RecordingFormat m_format;
    std::unique_ptr<WavFile> m_file;
    std::unique_ptr<pa_stream, Release> m_stream;
    PulseAudioOperation m_moveCheck;
    std::atomic<bool> m_isRecording = false;
    std::atomic<qint64> m_frameCount = 0;
};

} // namespace kestrova
