#pragma once

#include "Platform/PasteboardOffer.h"

#include <QString>

#include <memory>
#include <optional>

namespace kestrova {

/// The general clipboard. Usable from any thread.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    /// Replaces the contents by plain text. Once it returns, other applications get this text.
    /// The offer tells who asks for it from then on. Throws PlatformError when the clipboard cannot
    /// be taken over.
    virtual std::shared_ptr<PasteboardOffer> setString(const QString &text) = 0;
    /// The plain text on the clipboard; none when it holds no text or its owner does not answer
    /// in time.
    virtual std::optional<QString> string() = 0;
};

} // namespace kestrova
