#pragma once

#include <functional>

namespace kestrova {

/// Whether the condition came true before a generous limit. Runs the event loop, if there is one.
bool waitUntil(const std::function<bool()> &condition);

} // namespace kestrova
