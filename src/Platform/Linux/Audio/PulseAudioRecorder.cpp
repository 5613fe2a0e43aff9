#include "Platform/Linux/Audio/PulseAudioRecorder.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/Audio/PulseAudioMicrophone.h"

#include <QFile>

#include <mutex>

namespace kestrova {

namespace {

using std::chrono::steady_clock;

/// How long the server may take to start a recording. A sleeping Bluetooth microphone needs more
/// than a second; a hung server never answers.
constexpr std::chrono::seconds startLimit{3};

/// How long stop() may wait for what the microphone heard before it and the server still holds.
constexpr std::chrono::milliseconds drainLimit{250};

/// How much audio the server collects before it sends it: what the beginning and the end of a
/// recording wait for.
constexpr std::chrono::microseconds fragmentDuration{10'000};

pa_sample_spec sampleSpec(const RecordingFormat &format)
{
    return {PA_SAMPLE_S16LE, static_cast<uint32_t>(format.sampleRate),
            static_cast<uint8_t>(format.channelCount)};
}

pa_buffer_attr bufferAttributes(const pa_sample_spec &spec)
{
    // The server's default is its longest buffer, two minutes: a stall of ours loses nothing.
    constexpr auto serverDefault = static_cast<uint32_t>(-1);
    const size_t fragmentSize = pa_usec_to_bytes(fragmentDuration.count(), &spec);
    return {.maxlength = serverDefault,
            .tlength = serverDefault,
            .prebuf = serverDefault,
            .minreq = serverDefault,
            .fragsize = static_cast<uint32_t>(fragmentSize)};
}

void disconnectWhenReady(pa_stream *stream, void *)
{
    if (pa_stream_get_state(stream) == PA_STREAM_READY)
        pa_stream_disconnect(stream);
}

} // namespace

void PulseAudioRecorder::Release::operator()(pa_stream *stream) const
{
    // A stream that the server has yet to create cannot be disconnected, and would go on listening.
    pa_stream_set_state_callback(stream, &disconnectWhenReady, nullptr);
    pa_stream_set_read_callback(stream, nullptr, nullptr);
    pa_stream_set_moved_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

PulseAudioRecorder::PulseAudioRecorder(PulseAudioConnection &connection, AudioInputNews &news,
                                       const QUrl &fileURL, const RecordingFormat &format)
    : m_connection(connection), m_news(news), m_fileURL(fileURL), m_format(format)
{
}

PulseAudioRecorder::~PulseAudioRecorder()
{
    const std::lock_guard lock(m_connection);
    m_moveCheck.reset();
    m_stream.reset();
}

void PulseAudioRecorder::setMeteringEnabled(bool) {}

bool PulseAudioRecorder::prepareToRecord()
{
    try {
        if (!m_file)
            m_file = std::make_unique<WavFile>(m_fileURL.toLocalFile(), m_format);
        return true;
    } catch (const PlatformError &error) {
        qWarning("A recording could not be begun: %s", error.what());
        return false;
    }
}

bool PulseAudioRecorder::record()
{
    if (m_stream)
        return m_isRecording;
    if (!prepareToRecord()) {
        m_news.tellProblem(RecordingProblem::fileNotWritten);
        return false;
    }
    const bool hasStarted = start();
    if (!hasStarted)
        discardFile();
    return hasStarted;
}

bool PulseAudioRecorder::start()
{
    const auto deadline = steady_clock::now() + startLimit;
    const std::lock_guard lock(m_connection);
    if (!m_connection.waitUntilReady(deadline))
        return false;
    const std::string source = PulseAudioMicrophone::find(m_connection, deadline);
    return !source.empty() && openStream(source, deadline);
}

void PulseAudioRecorder::discardFile()
{
    m_file.reset();
    QFile::remove(m_fileURL.toLocalFile());
}

bool PulseAudioRecorder::openStream(const std::string &source,
                                    PulseAudioConnection::TimePoint deadline)
{
    const pa_sample_spec spec = sampleSpec(m_format);
    m_stream.reset(pa_stream_new(m_connection.context(), "Dictation", &spec, nullptr));
    if (!m_stream)
        return false;

    using Self = PulseAudioRecorder;
    pa_stream_set_state_callback(
        m_stream.get(), [](pa_stream *, void *self) { static_cast<Self *>(self)->stateChanged(); },
        this);
    pa_stream_set_read_callback(
        m_stream.get(),
        [](pa_stream *, size_t, void *self) { static_cast<Self *>(self)->takeAvailable(); }, this);
    pa_stream_set_moved_callback(
        m_stream.get(), [](pa_stream *, void *self) { static_cast<Self *>(self)->moved(); }, this);

    const pa_buffer_attr attributes = bufferAttributes(spec);
    const auto isDecided = [this] {
        return pa_stream_get_state(m_stream.get()) != PA_STREAM_CREATING;
    };
    if (pa_stream_connect_record(m_stream.get(), source.c_str(), &attributes,
                                 PA_STREAM_ADJUST_LATENCY) < 0 ||
        !m_connection.wait(deadline, isDecided) || !m_isRecording)
        m_stream.reset();
    return m_isRecording;
}

void PulseAudioRecorder::stateChanged()
{
    // Ready only until the microphone is removed or the server goes away.
    const bool isReady = pa_stream_get_state(m_stream.get()) == PA_STREAM_READY;
    const bool wasRecording = m_isRecording.exchange(isReady);
    if (wasRecording && !isReady)
        m_news.tellProblem(RecordingProblem::microphoneLost);
    m_connection.signal();
}

void PulseAudioRecorder::takeAvailable()
{
    const bool mayBeMonitor = m_moveCheck && isRunning(m_moveCheck);
    const void *data = nullptr;
    size_t size = 0;
    while (m_isRecording && !mayBeMonitor && pa_stream_peek(m_stream.get(), &data, &size) == 0 &&
           size > 0) {
        // No data stands for a gap in what the server has: it keeps its time.
        const bool written = data ? m_file->append({static_cast<const std::byte *>(data), size})
                                  : m_file->appendSilence(size);
        pa_stream_drop(m_stream.get());
        m_frameCount = m_file->frameCount();
        if (!written) {
            qWarning("A recording could not be written any further: %s",
                     qUtf8Printable(m_file->problem()));
            end(RecordingProblem::fileNotWritten);
        }
    }
    m_connection.signal();
}

void PulseAudioRecorder::moved()
{
    // The server moves the stream when its microphone is removed, if need be to what is being
    // played, which is nothing that the user dictated. What comes from the new place waits until
    // the server has said which it is.
    m_moveCheck.reset(pa_context_get_source_info_by_index(
        pa_stream_get_context(m_stream.get()), pa_stream_get_device_index(m_stream.get()),
        [](pa_context *, const pa_source_info *source, int, void *self) {
            if (source && PulseAudioMicrophone::isMonitor(*source))
                static_cast<PulseAudioRecorder *>(self)->end(RecordingProblem::microphoneLost);
        },
        this));
}

void PulseAudioRecorder::end(RecordingProblem problem)
{
    m_isRecording = false;
    m_news.tellProblem(problem);
    pa_stream_disconnect(m_stream.get());
    m_connection.signal();
}

void PulseAudioRecorder::drain()
{
    const auto deadline = steady_clock::now() + drainLimit;
    const PulseAudioOperation update(pa_stream_update_timing_info(
        m_stream.get(),
        [](pa_stream *, int, void *self) {
            static_cast<PulseAudioRecorder *>(self)->m_connection.signal();
        },
        this));
    const auto isUpdated = [&] { return !isRunning(update) || !m_isRecording; };
    if (!update || !m_connection.wait(deadline, isUpdated) || !m_isRecording)
        return;

    // The latency is the age of the next sample to come: so much is still under way.
    pa_usec_t latency = 0;
    int isNegative = 0;
    if (pa_stream_get_latency(m_stream.get(), &latency, &isNegative) < 0 || isNegative)
        return;
    constexpr qint64 microsecondsPerSecond = 1'000'000;
    const qint64 underWay =
        static_cast<qint64>(latency) * m_format.sampleRate / microsecondsPerSecond;
    // What the server is collecting into the next fragment is not always in the latency: of that
    // fragment one frame is enough, because it comes as a whole.
    const qint64 wanted = m_frameCount + underWay + 1;
    m_connection.wait(deadline, [&] { return m_frameCount >= wanted || !m_isRecording; });
}

void PulseAudioRecorder::stop()
{
    {
        const std::lock_guard lock(m_connection);
        if (m_isRecording)
            drain();
        m_isRecording = false;
        m_moveCheck.reset();
        m_stream.reset();
    }
    m_file.reset();
}

double PulseAudioRecorder::currentTime() const
{
    return static_cast<double>(m_frameCount) / m_format.sampleRate;
}

} // namespace kestrova
