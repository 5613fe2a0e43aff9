#pragma once

#include "Services/Model/DownloadProgress.h"
#include "Views/Primitives/Controls/ProgressStatus.h"

#include <optional>

namespace kestrova {

/// How the progress of the model's download is told, the same in every window.
ProgressStatus modelDownloadStatus(const std::optional<DownloadProgress> &progress);

} // namespace kestrova
