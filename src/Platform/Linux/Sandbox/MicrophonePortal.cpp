#include "Platform/Linux/Sandbox/MicrophonePortal.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusServiceWatcher>

namespace kestrova::MicrophonePortal {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop"_L1;
constexpr auto portalPath = "/org/freedesktop/portal/desktop"_L1;
constexpr uint granted = 0; // org.freedesktop.portal.Request.Response

// Its service and its interface have the same name.
constexpr auto store = "org.freedesktop.impl.portal.PermissionStore"_L1;
constexpr auto storePath = "/org/freedesktop/impl/portal/PermissionStore"_L1;
constexpr auto table = "devices"_L1;
constexpr auto device = "microphone"_L1;

QDBusMessage lookup()
{
    auto call = QDBusMessage::createMethodCall(store, storePath, store, u"Lookup"_s);
    call << QString(table) << QString(device);
    return call;
}

QDBusMessage accessDevice(const QString &token)
{
    auto call = QDBusMessage::createMethodCall(
        portal, portalPath, u"org.freedesktop.portal.Device"_s, u"AccessDevice"_s);
    call << uint(QCoreApplication::applicationPid()) << QStringList{u"microphone"_s}
         << QVariantMap{{u"handle_token"_s, token}};
    return call;
}

// Known before the call, so that no answer can come before it is listened to.
QString requestPath(const QDBusConnection &bus, const QString &token)
{
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    return portalPath + u"/request/"_s + sender + u'/' + token;
}

bool hasNoRecord(const QDBusError &error)
{
    return error.type() == QDBusError::ServiceUnknown || error.type() == QDBusError::AccessDenied ||
           error.name() == "org.freedesktop.portal.Error.NotFound"_L1;
}

State stateFor(const QStringList &permissions)
{
    const QString permission = permissions.value(0);
    if (permission == "no"_L1)
        return State::denied;
    return permission == "ask"_L1 ? State::notDetermined : State::authorized;
}

} // namespace

State decision(const QString &applicationId, std::chrono::milliseconds limit)
{
    const QDBusMessage reply =
        QDBusConnection::sessionBus().call(lookup(), QDBus::Block, static_cast<int>(limit.count()));
    if (reply.type() == QDBusMessage::ErrorMessage)
        return hasNoRecord(QDBusError(reply)) ? State::authorized : State::unknown;
    const auto permissions = qdbus_cast<QMap<QString, QStringList>>(reply.arguments().value(0));
    return stateFor(permissions.value(applicationId));
}

DecisionWatch::DecisionWatch(std::function<void()> changed) : m_changed(std::move(changed))
{
    QDBusConnection::sessionBus().connect(store, storePath, store, u"Changed"_s, this,
                                          SLOT(takeChange(QString, QString)));
}

void DecisionWatch::takeChange(const QString &changedTable, const QString &id)
{
    if (changedTable == table && id == device)
        m_changed();
}

Request::Request(Completion completion, QObject *parent)
    : QObject(parent), m_completion(std::move(completion))
{
    static int count = 0;
    const QString token = u"kestrova%1"_s.arg(++count);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(portal, requestPath(bus, token), u"org.freedesktop.portal.Request"_s, u"Response"_s,
                this, SLOT(takeResponse(uint, QVariantMap)));
    const auto *call = new QDBusPendingCallWatcher(bus.asyncCall(accessDevice(token)), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        if (call->isError())
            finish(false);
    });
    const auto *life =
        new QDBusServiceWatcher(portal, bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(life, &QDBusServiceWatcher::serviceUnregistered, this, [this] { finish(false); });
}

void Request::takeResponse(uint response, const QVariantMap &)
{
    finish(response == granted);
}

void Request::finish(bool isGranted)
{
    deleteLater();
    if (const auto complete = std::exchange(m_completion, nullptr))
        complete(isGranted);
}

} // namespace kestrova::MicrophonePortal
