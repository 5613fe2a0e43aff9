#pragma once

#include "Models/PermissionSnapshot.h"

#include <QObject>
#include <QVariantMap>

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

/// A question to the user. It deletes itself after the answer; the completion is never called once
/// it is gone.
class Request final : public QObject
{
    Q_OBJECT

public:
    using Completion = std::function<void(bool isGranted)>;

    /// Returns at once. The completion is called later; with false also when the portal does not
    /// ask, as it has come to do for sandboxed callers, or goes away.
    Request(Completion completion, QObject *parent);

private:
    Q_SLOT void takeResponse(uint response, const QVariantMap &results);
    void finish(bool isGranted);

    Completion m_completion; // none after the answer
};

} // namespace kestrova::MicrophonePortal
