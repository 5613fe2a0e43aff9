#pragma once

#include "Concurrency/Executor.h"
#include "Services/DictationCoordinatorEvent.h"

#include <QJsonObject>

#include <chrono>

namespace kestrova {

/// Prints what happens to standard output: one JSON object a line, each with "event" and, in
/// "at", the moment in milliseconds of the system's monotonic clock. Usable from any thread;
/// printing itself is left to the main thread.
class EventPrinter
{
public:
    /// The executor outlives the printer, and the printer what is posted to it.
    explicit EventPrinter(Executor &main) : m_main(main) {}

    void print(const DictationCoordinatorEvent &event);
    /// A command that was read.
    void printCommand(const QString &command);
    /// A line on standard input that is no command.
    void printMisuse(const QString &message);
    /// How long one step of a dictation took.
    void printStage(const QString &stage, std::chrono::nanoseconds duration);

private:
    void print(const QString &name, QJsonObject object);

    Executor &m_main;
};

} // namespace kestrova
