#include "support/RampPlayer.h"

#include <mutex>
#include <stdexcept>

namespace kestrova {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

constexpr auto answerLimit = 20s;

} // namespace

RampPlayer::RampPlayer(const char *sink)
{
    const auto deadline = steady_clock::now() + answerLimit;
    {
        const std::lock_guard lock(m_connection);
        const pa_sample_spec spec = {PA_SAMPLE_S16LE, sampleRate, 1};
        if (!m_connection.waitUntilReady(deadline))
            throw std::runtime_error("no sound server");
        m_stream = pa_stream_new(m_connection.context(), "ramp", &spec, nullptr);
        const auto signal = [](pa_stream *, void *self) {
            static_cast<RampPlayer *>(self)->m_connection.signal();
        };
        pa_stream_set_state_callback(m_stream, signal, this);
        pa_stream_set_write_callback(
            m_stream,
            [](pa_stream *, size_t size, void *self) {
                static_cast<RampPlayer *>(self)->write(size);
            },
            this);
        // Enough that it goes on when the server catches up after it has hung.
        constexpr auto serverDefault = static_cast<uint32_t>(-1);
        const pa_buffer_attr attributes = {.maxlength = serverDefault,
                                           .tlength = 4 * sampleRate * sizeof(qint16),
                                           .prebuf = serverDefault,
                                           .minreq = serverDefault,
                                           .fragsize = serverDefault};
        pa_stream_connect_playback(m_stream, sink, &attributes, PA_STREAM_INTERPOLATE_TIMING,
                                   nullptr, nullptr);
        const auto isDecided = [this] {
            return pa_stream_get_state(m_stream) != PA_STREAM_CREATING;
        };
        if (!m_connection.wait(deadline, isDecided))
            throw std::runtime_error("the sound server does not answer");
    }
    while (position() <= 0)
        if (steady_clock::now() > deadline)
            throw std::runtime_error("nothing is heard");
}

RampPlayer::~RampPlayer()
{
    const std::lock_guard lock(m_connection);
    pa_stream_set_write_callback(m_stream, nullptr, nullptr);
    pa_stream_set_state_callback(m_stream, nullptr, nullptr);
    pa_stream_disconnect(m_stream);
    pa_stream_unref(m_stream);
}

void RampPlayer::write(size_t size)
{
    std::vector<qint16> samples(size / sizeof(qint16));
    for (qint16 &sample : samples)
        sample = sampleOf(m_written++);
    pa_stream_write(m_stream, samples.data(), samples.size() * sizeof(qint16), nullptr, 0,
                    PA_SEEK_RELATIVE);
}

qint64 RampPlayer::position()
{
    const std::lock_guard lock(m_connection);
    const PulseAudioOperation update(pa_stream_update_timing_info(
        m_stream,
        [](pa_stream *, int, void *self) {
            static_cast<RampPlayer *>(self)->m_connection.signal();
        },
        this));
    pa_usec_t time = 0;
    if (!update ||
        !m_connection.wait(steady_clock::now() + answerLimit, [&] { return !isRunning(update); }) ||
        pa_stream_get_time(m_stream, &time) < 0)
        return 0;
    return static_cast<qint64>(time) * sampleRate / 1'000'000;
}

} // namespace kestrova
