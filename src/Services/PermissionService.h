#pragma once

#include "Platform/SystemAccess.h"
#include "Platform/Workspace.h"
#include "Services/Protocols.h"

namespace kestrova {

/// What the system allows the program to do, asked anew each time. Keeps nothing. Main thread.
class PermissionService final : public PermissionManaging
{
public:
    /// Both outlive the service.
    PermissionService(SystemAccess &access, Workspace &workspace);

    PermissionSnapshot currentPermissions() override;
    /// An undecided user is asked, with the program in front so that the question is seen. One who
    /// has refused would not be asked again, so the settings open where the decision is changed.
    void requestMicrophonePermission(std::function<void(bool isGranted)> completion) override;
    void promptForAccessibility() override;

private:
    void bringProgramToFront();
    void openMicrophonePrivacySettings();

    SystemAccess &m_access;
    Workspace &m_workspace;
};

} // namespace kestrova
