#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <optional>

namespace kestrova {

/// Writes over and over, without end, and calls its argument after each finished write.
using WriteForEver = std::function<void(const std::function<void()> &confirm)>;

/// Runs the writer in a process of its own and kills it when it has run for that long, whatever it
/// is doing then. Returns how many writes it has confirmed; none when it ended by itself.
std::optional<qint64> writesUntilKilled(const WriteForEver &writeForEver,
                                        std::chrono::microseconds time);

/// How long one write takes at present, in microseconds: on a machine with other load a fixed time
/// to live would be too short for any.
qint64 durationOf(const std::function<void()> &write);

} // namespace kestrova
