#include "Platform/Linux/Sandbox/MicrophonePortal.h"

#include "Platform/Linux/Portal/PortalRequest.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>

namespace kestrova::MicrophonePortal {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

namespace {

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

void request(std::function<void(bool isGranted)> completion, QObject *owner)
{
    const PortalRequest::Call accessDevice{
        u"org.freedesktop.portal.Device"_s,
        u"AccessDevice"_s,
        {uint(QCoreApplication::applicationPid()), QStringList{u"microphone"_s}},
        {}};
    new PortalRequest(
        accessDevice,
        [completion = std::move(completion)](const PortalRequest::Answer &answer) {
            completion(answer.outcome == PortalRequest::Outcome::granted);
        },
        owner);
}

} // namespace kestrova::MicrophonePortal
