#pragma once

#include "Services/Model/DownloadProgress.h"

#include <QString>

namespace kestrova {

/// How the progress of a download is told, the same in every window. The default: none is known.
struct ModelDownloadStatus
{
    QString amount;       ///< "62 MB of 148 MB"; the size alone while the total is not known
    QString percentage;   ///< "42%"; empty while the total is not known
    double fraction = -1; ///< 0 to 1; below 0 while the total is not known

    static ModelDownloadStatus of(const std::optional<DownloadProgress> &progress);
};

} // namespace kestrova
