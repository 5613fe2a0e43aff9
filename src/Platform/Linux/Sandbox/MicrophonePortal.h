#pragma once

#include "Models/PermissionSnapshot.h"

#include <QObject>

#include <chrono>
#include <functional>

/// The microphone's permission of a Flatpak, as xdg-desktop-portal and its permission store keep
/// it. Main thread.
namespace kestrova::MicrophonePortal {

/// What the user has decided about the application. One who has decided nothing has not restricted
/// what the sandbox allows: authorized. So is one whose decisions the sandbox does not let us see.
/// unknown when the store does not answer within the limit.
MicrophoneAuthorizationState decision(const QString &applicationId,
                                      std::chrono::milliseconds limit);

/// Tells when the user decides otherwise about the microphone, for whatever application.
class DecisionWatch final : public QObject
{
    Q_OBJECT

public:
    explicit DecisionWatch(std::function<void()> changed);

private:
    Q_SLOT void takeChange(const QString &table, const QString &id);

    const std::function<void()> m_changed;
};

/// Asks the user, and returns at once. The completion is called later, and never once the owner is
/// gone; with false also when the portal does not ask, as it has come to do for sandboxed callers,
/// or goes away.
void request(std::function<void(bool isGranted)> completion, QObject *owner);

} // namespace kestrova::MicrophonePortal
