#pragma once

#include <pulse/pulseaudio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace kestrova {

struct CancelPulseAudioOperation
{
    void operator()(pa_operation *operation) const
    {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
};
/// A request to the server. Letting go of it means that its callback is not called any more.
using PulseAudioOperation = std::unique_ptr<pa_operation, CancelPulseAudioOperation>;

inline bool isRunning(const PulseAudioOperation &operation)
{
    return pa_operation_get_state(operation.get()) == PA_OPERATION_RUNNING;
}

/// The program's one connection to the sound server (PulseAudio or PipeWire), with the thread
/// that serves it. Made at once, and made again when it is lost: for a while by itself, so that a
/// server that starts anew is found, and afterwards when a recording asks.
///
/// It is a lock for std::lock_guard: whoever calls libpulse for an object of this connection
/// holds it. libpulse calls back on the connection's thread with the lock held.
class PulseAudioConnection
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Between the attempts to connect by itself.
    using Pauses = std::vector<std::chrono::milliseconds>;
    static Pauses usualPauses();
    /// Called on the connection's thread, with the lock held, when the server is reached or lost.
    using StateHandler = std::function<void(pa_context *)>;

    /// Returns at once, connected or not.
    explicit PulseAudioConnection(Pauses pauses = usualPauses(), StateHandler stateHandler = {});
    /// Every stream is gone by now.
    ~PulseAudioConnection();
    PulseAudioConnection(const PulseAudioConnection &) = delete;
    PulseAudioConnection &operator=(const PulseAudioConnection &) = delete;

    void lock() { pa_threaded_mainloop_lock(m_loop); }
    void unlock() { pa_threaded_mainloop_unlock(m_loop); }

    // The rest is called with the lock held.

    /// Connects unless that has been done or is under way. Waits for nothing.
    void connectUnlessGood(pa_context_flags_t flags);
    /// Whether the server answered before the deadline. Starts one where the user's configuration
    /// says so; returns at once when there is none.
    bool waitUntilReady(TimePoint deadline);

    /// Gives up the lock until isDone, which is asked again after each signal(); false when the
    /// deadline came first. Not for the connection's own thread.
    bool wait(TimePoint deadline, const std::function<bool()> &isDone);
    /// Makes all waits ask again.
    void signal() { pa_threaded_mainloop_signal(m_loop, 0); }

    /// Null before the first attempt to connect.
    pa_context *context() const { return m_context.get(); }

private:
    struct Release
    {
        void operator()(pa_context *context) const;
    };

    bool isGood() const;
    bool isReady() const;
    void connectAfter(std::chrono::microseconds delay);
    void retry();
    void stateChanged();

    pa_threaded_mainloop *const m_loop;
    pa_mainloop_api *const m_api;
    std::unique_ptr<pa_context, Release> m_context;
    pa_time_event *m_connectTimer = nullptr;
    const Pauses m_pauses;
    const StateHandler m_stateHandler;
    size_t m_retryCount = 0; // since the server was last reached
};

} // namespace kestrova
