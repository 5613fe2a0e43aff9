#pragma once

#include "Services/Model/PartialFile.h"

#include <QUrl>

#include <memory>
#include <optional>

namespace kestrova {

/// What has arrived of a download, and what is needed to ask for the rest.
struct PartialDownload
{
    QUrl url;
    std::unique_ptr<PartialFile> file;
    /// Strong entity tag or date of the version that the bytes belong to, as If-Range takes it.
    /// Empty when the server gave none: the rest then cannot be asked for.
    QByteArray validator = {};
    std::optional<qint64> totalBytes = {}; ///< none when the server did not tell
    bool isComplete = false;               ///< There is no rest.

    bool canBeResumed() const { return isComplete || (file->size() > 0 && !validator.isEmpty()); }
};

} // namespace kestrova
