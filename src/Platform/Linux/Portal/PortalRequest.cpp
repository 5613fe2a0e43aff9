#include "Platform/Linux/Portal/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <utility>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop"_L1;
constexpr auto portalPath = "/org/freedesktop/portal/desktop"_L1;
constexpr auto requestInterface = "org.freedesktop.portal.Request"_L1;

// The first argument of org.freedesktop.portal.Request.Response.
constexpr uint responseSuccess = 0;
constexpr uint responseCancelled = 1;

QString newToken()
{
    static int count = 0;
    return u"kestrova%1"_s.arg(++count);
}

// Known before the call, so that no answer can come before it is listened to.
QString requestPath(const QDBusConnection &bus, const QString &token)
{
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    return portalPath + u"/request/"_s + sender + u'/' + token;
}

} // namespace

PortalRequest::PortalRequest(const Call &call, Completion completion, QObject *parent,
                             std::optional<std::chrono::milliseconds> limit)
    : QObject(parent), m_bus(QDBusConnection::sessionBus()), m_completion(std::move(completion))
{
    const QString token = newToken();
    m_path = requestPath(m_bus, token);
    listenTo(m_path);
    send(call, token);
    const auto *life =
        new QDBusServiceWatcher(portal, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(life, &QDBusServiceWatcher::serviceUnregistered, this, [this] { finish({}); });
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        close();
        finish({});
    });
    if (limit)
        m_limit.start(*limit);
}

PortalRequest::~PortalRequest()
{
    if (m_completion)
        close();
}

void PortalRequest::listenTo(const QString &path)
{
    m_bus.connect(portal, path, requestInterface, u"Response"_s, this,
                  SLOT(takeResponse(uint, QVariantMap)));
}

void PortalRequest::send(const Call &call, const QString &token)
{
    QVariantMap options = call.options;
    options.insert(u"handle_token"_s, token);
    auto message = QDBusMessage::createMethodCall(portal, portalPath, call.interface, call.method);
    message.setArguments(call.arguments + QVariantList{options});
    const auto *reply = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this,
            [this, reply] { takeReply(reply->reply()); });
}

void PortalRequest::takeReply(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        finish({});
        return;
    }
    // Portals before version 0.9 choose the path themselves.
    const QString path = qvariant_cast<QDBusObjectPath>(reply.arguments().value(0)).path();
    if (path.isEmpty() || path == m_path)
        return;
    m_path = path;
    listenTo(path);
}

void PortalRequest::takeResponse(uint response, const QVariantMap &results)
{
    if (response == responseSuccess)
        finish({Outcome::granted, results});
    else
        finish({response == responseCancelled ? Outcome::cancelled : Outcome::failed, {}});
}

void PortalRequest::close()
{
    auto message = QDBusMessage::createMethodCall(portal, m_path, requestInterface, u"Close"_s);
    message.setAutoStartService(false);
    m_bus.send(message);
}

void PortalRequest::finish(const Answer &answer)
{
    deleteLater();
    if (const auto complete = std::exchange(m_completion, nullptr))
        complete(answer);
}

} // namespace kestrova
