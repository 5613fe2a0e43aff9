#pragma once

#include "Models/Settings/AppSettings.h"
#include "Platform/Workspace.h"

namespace kestrova {

/// Which application a transcript goes to. Keeps track of the application that the user was in
/// before one of our own windows came to the front. Main thread.
class InsertionTargets
{
public:
    /// Starts to follow the workspace, which outlives this.
    explicit InsertionTargets(Workspace &workspace);

    /// The application in front, or the last one that was when it is this program or none; none
    /// when there was none, and where it is not known which one is in front: whatever is.
    std::optional<TargetApplication> preferred() const;
    /// The application assigned to the slot, with the process identifier 0 when it is not running
    /// or shares its process; none when the slot is not assigned.
    std::optional<TargetApplication> forHotbarSlot(const AppSettings &settings,
                                                   int slotIndex) const;

private:
    Workspace &m_workspace;
    std::optional<TargetApplication> m_lastExternalApplication;
    const std::unique_ptr<Observation> m_activationObserver;
};

} // namespace kestrova
