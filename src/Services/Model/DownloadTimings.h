#pragma once

#include <chrono>

namespace kestrova {

/// Every wait of a download, passed in so that tests need not sit through them.
struct DownloadTimings
{
    /// For finding the host, connecting and securing the connection, together.
    std::chrono::milliseconds connectLimit = std::chrono::seconds(30);
    /// How long nothing may arrive before the transfer counts as broken.
    std::chrono::milliseconds stallLimit = std::chrono::seconds(60);
    /// Before a broken transfer goes on: a network that changes needs a moment.
    std::chrono::milliseconds pauseBeforeResuming = std::chrono::seconds(1);
    /// The least time between two progress reports.
    std::chrono::milliseconds progressInterval = std::chrono::milliseconds(100);
};

} // namespace kestrova
