#pragma once

#include "Platform/Audio/AudioInputNews.h"
#include "Platform/Audio/AudioRecorder.h"

#include <QList>
#include <QStringList>

#include <atomic>
#include <mutex>

namespace kestrova {

struct FakeRecorderCreation
{
    QUrl fileURL;
    RecordingFormat format;
};

/// Its recorders write no file. Usable from any thread; they may outlive it.
class FakeAudioInput final : public AudioInput
{
public:
    std::unique_ptr<AudioRecorder> makeRecorder(const QUrl &fileURL,
                                                const RecordingFormat &format) override;
    MicrophoneCondition listen(AudioInputListener listener) override
    {
        return m_news.listen(std::move(listener));
    }
    void reconnect() override { ++m_reconnectionCount; }

    /// From now on makeRecorder() throws this text; empty: works again.
    void failCreation(const QString &problem);
    /// Whether prepareToRecord() succeeds from now on.
    void setPrepareSucceeds(bool succeeds);
    /// Whether record() succeeds from now on.
    void setRecordSucceeds(bool succeeds);
    /// What currentTime() of a stopped recorder says from now on; a running one says 0.
    void setRecordedSeconds(double seconds);
    /// Ends every running recording as if the microphone had been removed.
    void endRecordings();
    void setCondition(MicrophoneCondition condition) { m_news.setCondition(condition); }
    /// As if a recording could not be written any further.
    void tellProblem(RecordingProblem problem) { m_news.tellProblem(problem); }
    /// How often somebody asked for the sound system to be looked for.
    int reconnectionCount() const { return m_reconnectionCount; }
    /// What the recorders were made for, oldest first.
    QList<FakeRecorderCreation> creations() const;
    /// What was called on the recorders, oldest first: "setMeteringEnabled false",
    /// "prepareToRecord", "record", "stop", "url", "currentTime", "released".
    QStringList calls() const;

private:
    class Recorder;

    /// What the input shares with its recorders; all of it under the mutex.
    struct World
    {
        std::mutex mutex;
        QString creationProblem;
        bool prepareSucceeds = true;
        bool recordSucceeds = true;
        double recordedSeconds = 0;
        int endCount = 0;
        QList<FakeRecorderCreation> creations;
        QStringList calls;
    };

    const std::shared_ptr<World> m_world = std::make_shared<World>();
    AudioInputNews m_news;
    std::atomic<int> m_reconnectionCount = 0;
};

} // namespace kestrova
