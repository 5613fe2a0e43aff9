#include "Services/PermissionService.h"

#include <QCoreApplication>

namespace kestrova {

PermissionService::PermissionService(SystemAccess &access, Workspace &workspace)
    : m_access(access), m_workspace(workspace)
{
}

PermissionSnapshot PermissionService::currentPermissions()
{
    PermissionSnapshot snapshot;
    snapshot.microphoneStatus = m_access.microphoneState();
    snapshot.microphoneAuthorized =
        snapshot.microphoneStatus == MicrophoneAuthorizationState::authorized;
    snapshot.accessibilityAuthorized = m_access.accessibility() == Access::granted;
    return snapshot;
}

void PermissionService::requestMicrophonePermission(std::function<void(bool isGranted)> completion)
{
    switch (m_access.microphoneState()) {
    case MicrophoneAuthorizationState::authorized:
        completion(true);
        return;
    case MicrophoneAuthorizationState::notDetermined:
        bringProgramToFront();
        m_access.requestMicrophone(std::move(completion));
        return;
    case MicrophoneAuthorizationState::denied:
    case MicrophoneAuthorizationState::restricted:
    case MicrophoneAuthorizationState::unknown:
        openMicrophonePrivacySettings();
        completion(false);
        return;
    }
}

void PermissionService::promptForAccessibility()
{
    m_access.promptForAccessibility();
}

void PermissionService::bringProgramToFront()
{
    const auto processIdentifier = static_cast<qint32>(QCoreApplication::applicationPid());
    if (const auto program = m_workspace.runningApplication(processIdentifier))
        m_workspace.activate(*program);
}

void PermissionService::openMicrophonePrivacySettings()
{
    for (const QUrl &page : m_access.microphoneSettingsPages()) {
        if (page.isValid() && m_workspace.openAddress(page))
            return;
    }
}

} // namespace kestrova
