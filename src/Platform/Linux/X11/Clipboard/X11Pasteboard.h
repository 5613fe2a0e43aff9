#pragma once

#include "Platform/Pasteboard.h"

#include "Platform/Linux/X11/Clipboard/SelectionServer.h"

namespace kestrova {

/// The CLIPBOARD selection, and PRIMARY with the same text, because that is what terminals
/// paste. Destroying it hands the text over to the clipboard manager, if there is one.
class X11Pasteboard final : public Pasteboard
{
public:
    /// How long setString() waits for the X server, which takes a millisecond.
    static constexpr std::chrono::milliseconds takeoverLimit{2000};

    /// An empty name means $DISPLAY. Throws PlatformError when the X server cannot be reached.
    explicit X11Pasteboard(const QByteArray &displayName = {});

    std::shared_ptr<PasteboardOffer> setString(const QString &text) override;
    /// Our own text comes without asking the X server.
    std::optional<QString> string() override;

private:
    const QByteArray m_displayName;
    SelectionServer m_server;
};

} // namespace kestrova
