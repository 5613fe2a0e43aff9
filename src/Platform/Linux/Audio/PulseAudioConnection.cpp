#include "Platform/Linux/Audio/PulseAudioConnection.h"

#include <algorithm>
#include <system_error>

namespace kestrova {

using namespace std::chrono_literals;

namespace {

timeval timeAfter(std::chrono::microseconds delay)
{
    timeval time;
    pa_gettimeofday(&time);
    pa_timeval_add(&time, static_cast<pa_usec_t>(delay.count()));
    return time;
}

/// A time-out on the loop, which ends pa_threaded_mainloop_wait(): that knows none itself.
class WaitLimit
{
public:
    WaitLimit(pa_threaded_mainloop *loop, std::chrono::microseconds limit)
        : m_loop(loop), m_api(pa_threaded_mainloop_get_api(loop))
    {
        const timeval due = timeAfter(limit);
        m_timer = m_api->time_new(m_api, &due, &WaitLimit::expire, this);
    }
    ~WaitLimit() { m_api->time_free(m_timer); }
    WaitLimit(const WaitLimit &) = delete;
    WaitLimit &operator=(const WaitLimit &) = delete;

    bool hasExpired() const { return m_hasExpired; }

private:
    static void expire(pa_mainloop_api *, pa_time_event *, const timeval *, void *self)
    {
        auto *limit = static_cast<WaitLimit *>(self);
        limit->m_hasExpired = true;
        pa_threaded_mainloop_signal(limit->m_loop, 0);
    }

    pa_threaded_mainloop *const m_loop;
    pa_mainloop_api *const m_api;
    pa_time_event *m_timer;
    bool m_hasExpired = false;
};

} // namespace

void PulseAudioConnection::Release::operator()(pa_context *context) const
{
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

PulseAudioConnection::Pauses PulseAudioConnection::usualPauses()
{
    return {250ms, 500ms, 1s, 2s, 4s, 8s};
}

PulseAudioConnection::PulseAudioConnection(Pauses pauses, StateHandler stateHandler)
    : m_loop(pa_threaded_mainloop_new()), m_api(pa_threaded_mainloop_get_api(m_loop)),
      m_pauses(std::move(pauses)), m_stateHandler(std::move(stateHandler))
{
    // Connecting reads configuration and may look at the X server: not on the caller's thread.
    connectAfter(std::chrono::microseconds(0));
    // Of a loop that runs it would name the calling thread.
    pa_threaded_mainloop_set_name(m_loop, "sound");
    if (pa_threaded_mainloop_start(m_loop) < 0)
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
}

PulseAudioConnection::~PulseAudioConnection()
{
    pa_threaded_mainloop_stop(m_loop);
    m_context.reset();
    m_api->time_free(m_connectTimer);
    pa_threaded_mainloop_free(m_loop);
}

bool PulseAudioConnection::isGood() const
{
    return m_context && PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context.get()));
}

bool PulseAudioConnection::isReady() const
{
    return m_context && pa_context_get_state(m_context.get()) == PA_CONTEXT_READY;
}

void PulseAudioConnection::connectAfter(std::chrono::microseconds delay)
{
    const timeval due = timeAfter(delay);
    if (m_connectTimer) {
        m_api->time_restart(m_connectTimer, &due);
        return;
    }
    m_connectTimer = m_api->time_new(
        m_api, &due,
        [](pa_mainloop_api *, pa_time_event *, const timeval *, void *self) {
            // Nobody waits for this connection, so no server is started for it.
            static_cast<PulseAudioConnection *>(self)->connectUnlessGood(PA_CONTEXT_NOAUTOSPAWN);
        },
        this);
}

void PulseAudioConnection::connectUnlessGood(pa_context_flags_t flags)
{
    if (isGood())
        return;
    m_context.reset(pa_context_new(m_api, "Kestrova"));
    pa_context_set_state_callback(
        m_context.get(),
        [](pa_context *, void *self) { static_cast<PulseAudioConnection *>(self)->stateChanged(); },
        this);
    if (pa_context_connect(m_context.get(), nullptr, flags, nullptr) < 0)
        stateChanged();
}

void PulseAudioConnection::retry()
{
    if (m_retryCount < m_pauses.size())
        connectAfter(m_pauses[m_retryCount++]);
}

void PulseAudioConnection::stateChanged()
{
    if (isReady())
        m_retryCount = 0;
    else if (!isGood())
        retry();
    if (m_stateHandler)
        m_stateHandler(m_context.get());
    signal();
}

bool PulseAudioConnection::waitUntilReady(TimePoint deadline)
{
    connectUnlessGood(PA_CONTEXT_NOFLAGS);
    wait(deadline, [this] { return isReady() || !isGood(); });
    return isReady();
}

bool PulseAudioConnection::wait(TimePoint deadline, const std::function<bool()> &isDone)
{
    using namespace std::chrono;
    const auto left = duration_cast<microseconds>(deadline - steady_clock::now());
    const WaitLimit limit(m_loop, std::max(left, microseconds(0)));
    while (!isDone()) {
        if (limit.hasExpired())
            return false;
        pa_threaded_mainloop_wait(m_loop);
    }
    return true;
}

} // namespace kestrova
