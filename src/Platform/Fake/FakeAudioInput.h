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

class FakeAudioInputControl
{
public:
    virtual ~FakeAudioInputControl() = default;

    /// From now on makeRecorder() throws this text; empty: works again.
    virtual void failCreation(const QString &problem) = 0;
    /// Whether prepareToRecord() succeeds from now on.
    virtual void setPrepareSucceeds(bool succeeds) = 0;
    /// Whether record() succeeds from now on.
    virtual void setRecordSucceeds(bool succeeds) = 0;
    /// What currentTime() of a stopped recorder says from now on; a running one says 0.
    virtual void setRecordedSeconds(double seconds) = 0;
    /// Ends every running recording as if the microphone had been removed.
    virtual void endRecordings() = 0;
    virtual void setCondition(MicrophoneCondition condition) = 0;
    /// As if a recording could not be written any further.
    virtual void tellProblem(RecordingProblem problem) = 0;
    /// How often somebody asked for the sound system to be looked for.
    virtual int reconnectionCount() const = 0;

    /// What the recorders were made for, oldest first.
    virtual QList<FakeRecorderCreation> creations() const = 0;
    /// What was called on the recorders, oldest first: "setMeteringEnabled false",
    /// "prepareToRecord", "record", "stop", "url", "currentTime", "released".
    virtual QStringList calls() const = 0;
};

/// Its recorders write no file. Usable from any thread; they may outlive it.
class FakeAudioInput final : public AudioInput, public FakeAudioInputControl
{
public:
    std::unique_ptr<AudioRecorder> makeRecorder(const QUrl &fileURL,
                                                const RecordingFormat &format) override;
    MicrophoneCondition listen(AudioInputListener listener) override
    {
        return m_news.listen(std::move(listener));
    }
    void reconnect() override { ++m_reconnectionCount; }

    void failCreation(const QString &problem) override;
    void setPrepareSucceeds(bool succeeds) override;
    void setRecordSucceeds(bool succeeds) override;
    void setRecordedSeconds(double seconds) override;
    void endRecordings() override;
    void setCondition(MicrophoneCondition condition) override { m_news.setCondition(condition); }
    void tellProblem(RecordingProblem problem) override { m_news.tellProblem(problem); }
    int reconnectionCount() const override { return m_reconnectionCount; }
    QList<FakeRecorderCreation> creations() const override;
    QStringList calls() const override;

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
