#include "Platform/Fake/Audio/FakeAudioInput.h"

#include "Models/ReadableError.h"

namespace kestrova {

using namespace Qt::StringLiterals;

class FakeAudioInput::Recorder final : public AudioRecorder
{
public:
    Recorder(std::shared_ptr<World> world, const QUrl &fileURL)
        : m_world(std::move(world)), m_fileURL(fileURL)
    {
    }
    ~Recorder() override { note(u"released"_s); }

    void setMeteringEnabled(bool enabled) override
    {
        note(enabled ? u"setMeteringEnabled true"_s : u"setMeteringEnabled false"_s);
    }
    bool prepareToRecord() override
    {
        const auto lock = note(u"prepareToRecord"_s);
        return m_world->prepareSucceeds;
    }
    bool record() override
    {
        const auto lock = note(u"record"_s);
        m_isStarted = m_world->recordSucceeds;
        m_endCountAtStart = m_world->endCount;
        return m_isStarted;
    }
    void stop() override
    {
        const auto lock = note(u"stop"_s);
        m_isStarted = false;
    }
    bool isRecording() const override
    {
        const std::lock_guard lock(m_world->mutex);
        return m_isStarted && m_endCountAtStart == m_world->endCount;
    }
    QUrl url() const override
    {
        note(u"url"_s);
        return m_fileURL;
    }
    double currentTime() const override
    {
        const auto lock = note(u"currentTime"_s);
        return m_isStarted ? 0 : m_world->recordedSeconds;
    }

private:
    std::unique_lock<std::mutex> note(const QString &call) const
    {
        std::unique_lock lock(m_world->mutex);
        m_world->calls.append(call);
        return lock;
    }

    const std::shared_ptr<World> m_world;
    const QUrl m_fileURL;
    bool m_isStarted = false;
    int m_endCountAtStart = 0;
};

std::unique_ptr<AudioRecorder> FakeAudioInput::makeRecorder(const QUrl &fileURL,
                                                            const RecordingFormat &format)
{
    const std::lock_guard lock(m_world->mutex);
    if (!m_world->creationProblem.isEmpty())
        throw PlatformError(m_world->creationProblem);
    m_world->creations.append({fileURL, format});
    return std::make_unique<Recorder>(m_world, fileURL);
}

void FakeAudioInput::failCreation(const QString &problem)
{
    const std::lock_guard lock(m_world->mutex);
    m_world->creationProblem = problem;
}

void FakeAudioInput::setPrepareSucceeds(bool succeeds)
{
    const std::lock_guard lock(m_world->mutex);
    m_world->prepareSucceeds = succeeds;
}

void FakeAudioInput::setRecordSucceeds(bool succeeds)
{
    const std::lock_guard lock(m_world->mutex);
    m_world->recordSucceeds = succeeds;
}

void FakeAudioInput::setRecordedSeconds(double seconds)
{
    const std::lock_guard lock(m_world->mutex);
    m_world->recordedSeconds = seconds;
}

void FakeAudioInput::endRecordings()
{
    const std::lock_guard lock(m_world->mutex);
    ++m_world->endCount;
}

QList<FakeRecorderCreation> FakeAudioInput::creations() const
{
    const std::lock_guard lock(m_world->mutex);
    return m_world->creations;
}

QStringList FakeAudioInput::calls() const
{
    const std::lock_guard lock(m_world->mutex);
    return m_world->calls;
}

} // namespace kestrova
