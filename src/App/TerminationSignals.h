#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kestrova {

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop of the thread that made it. A
/// signal that the program was started to ignore stays ignored; the second one of a kind ends the
/// program the hard way. One at a time in a process.
class TerminationSignals
{
public:
    explicit TerminationSignals(std::function<void()> terminate);
    /// The signals have their default effect again.
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace kestrova
