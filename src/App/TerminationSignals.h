#pragma once

#include <QSocketNotifier>

#include <chrono>
#include <functional>
#include <memory>

namespace kestrova {

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop of the thread that made it. A
/// signal that the program was started to ignore stays ignored; the second one of a kind ends the
/// program the hard way. So does the end of its time, of which a call into an X server that does
/// not answer knows nothing: child processes are then ended with it. One at a time in a process.
class TerminationSignals
{
public:
    /// How long the program may take to end; longer while it goes on computing.
    static constexpr std::chrono::seconds endLimit{3};

    explicit TerminationSignals(std::function<void()> terminate);
    /// The signals have their default effect again.
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

    /// The time to end begins now, unless it did with a signal.
    static void limitEnd();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kestrova
