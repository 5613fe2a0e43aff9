#pragma once

#include "Platform/Linux/X11/Connection/X11EventSource.h"
#include "Platform/Linux/X11/Keys/X11KeyTranslation.h"

#include <optional>

namespace kestrova {

/// The translation by the keymap of the moment, which is read when it is needed. Main thread.
class X11PresentKeymap
{
public:
    /// An empty display name means $DISPLAY.
    explicit X11PresentKeymap(const QByteArray &displayName);

    /// By the keymap in which every key event that Qt has told of was pressed: one round trip, and
    /// some more when the keymap has changed. Valid until the next call.
    const X11KeyTranslation &translation();

private:
    X11EventSource m_events;
    std::optional<X11KeyTranslation> m_translation;
};

} // namespace kestrova
