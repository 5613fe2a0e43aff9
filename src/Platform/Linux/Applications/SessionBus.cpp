#include "Platform/Linux/Applications/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>
#include <QVariantMap>

namespace kestrova::SessionBus {

using namespace Qt::StringLiterals;

namespace {

// A name that an application owns (D-Bus Specification, "Message Protocol Names"). libdbus ends the
// program when it is given anything else.
bool isOwnedName(const QString &name)
{
    constexpr qsizetype longestName = 255;
    static const QRegularExpression elements(QRegularExpression::anchoredPattern(
        u"[A-Za-z_-][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)+"));
    return name.size() <= longestName && elements.match(name).hasMatch();
}

// The object path that the Desktop Entry Specification derives from the id.
QString objectPath(QString identifier)
{
    return u'/' + identifier.replace(u'.', u'/').replace(u'-', u'_');
}

} // namespace

bool activateApplication(const QString &identifier, std::chrono::milliseconds limit)
{
    if (!isOwnedName(identifier))
        return false;
    auto call = QDBusMessage::createMethodCall(identifier, objectPath(identifier),
                                               u"org.freedesktop.Application"_s, u"Activate"_s);
    const QVariantMap noPlatformData;
    call << noPlatformData;
    const QDBusMessage reply =
        QDBusConnection::sessionBus().call(call, QDBus::Block, static_cast<int>(limit.count()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace kestrova::SessionBus
