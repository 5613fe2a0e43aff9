#pragma once

#include <QString>

#include <optional>

namespace kestrova {

/// The general clipboard. Usable from any thread.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    /// Replaces the contents by plain text. Once it returns, other applications get this text.
    /// Throws PlatformError when the clipboard cannot be taken over.
    virtual void setString(const QString &text) = 0;
    /// The plain text on the clipboard; none when it holds no text or its owner does not answer
    /// in time.
    virtual std::optional<QString> string() = 0;
};

} // namespace kestrova
