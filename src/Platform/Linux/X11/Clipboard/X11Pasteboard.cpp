#include "Platform/Linux/X11/Clipboard/X11Pasteboard.h"

#include "Models/ReadableError.h"
#include "Platform/Linux/X11/Clipboard/SelectionReader.h"

namespace kestrova {

using namespace Qt::StringLiterals;

X11Pasteboard::X11Pasteboard(const QByteArray &displayName)
    : m_displayName(displayName), m_server(displayName)
{
}

std::shared_ptr<PasteboardOffer> X11Pasteboard::setString(const QString &text)
{
    auto offer = std::make_shared<PasteboardOffer>();
    std::future<bool> isOwned = m_server.own(text, offer);
    if (isOwned.wait_for(takeoverLimit) == std::future_status::timeout)
        throw PlatformError(u"The clipboard could not be set: the X server does not answer."_s);
    if (!isOwned.get())
        throw PlatformError(
            u"The clipboard could not be set: the X server did not hand it over."_s);
    return offer;
}

std::optional<QString> X11Pasteboard::string()
{
    if (std::optional<QString> own = m_server.ownText())
        return own;
    return SelectionReader(m_displayName).readClipboard();
}

} // namespace kestrova
