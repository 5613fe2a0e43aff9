#pragma once

#include "Models/ReadableError.h"

#include <QUrl>

namespace kestrova {

/// The failures that the program's own services detect. The factories are the one place where
/// the fixed messages are written; the three string-carrying kinds take their text from the
/// thrower.
class KestrovaError final : public ReadableError
{
public:
    enum class Kind {
        invalidState,
        processFailed,
        configuration,
        checksumMismatch,
        missingModel,
        emptyTranscription,
    };

    static KestrovaError invalidState(const QString &message);
    static KestrovaError processFailed(const QString &message);
    static KestrovaError configuration(const QString &message);
    /// Both digests are hexadecimal SHA-256, shown as they are given.
    static KestrovaError checksumMismatch(const QString &expected, const QString &actual);
    /// The message names the URL's path without its scheme.
    static KestrovaError missingModel(const QUrl &modelURL);
    static KestrovaError emptyTranscription();

    Kind kind() const noexcept { return m_kind; }

private:
    KestrovaError(Kind kind, const QString &message) : ReadableError(message), m_kind(kind) {}

    Kind m_kind;
};

} // namespace kestrova
