#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

namespace kestrova {

/// How far a download has come.
struct DownloadProgress
{
    qint64 receivedBytes = 0;
    std::optional<qint64> totalBytes; ///< none when the server does not tell

    bool operator==(const DownloadProgress &) const = default;
};

/// Called on the worker that downloads, a few times a second and at the end. Must not throw.
using DownloadProgressSink = std::function<void(const DownloadProgress &)>;

} // namespace kestrova
