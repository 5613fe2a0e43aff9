#include "ViewModels/InsertionTargets.h"

#include <QCoreApplication>

#include <algorithm>

namespace kestrova {

namespace {

/// None for this program itself.
std::optional<TargetApplication> externalTarget(const std::optional<RunningApplication> &app)
{
    if (!app || app->processIdentifier == QCoreApplication::applicationPid())
        return std::nullopt;
    return app->asTarget();
}

} // namespace

InsertionTargets::InsertionTargets(Workspace &workspace)
    : m_workspace(workspace),
      m_lastExternalApplication(externalTarget(workspace.frontmostApplication())),
      m_activationObserver(workspace.observeActivations([this](const RunningApplication &app) {
          if (const auto target = externalTarget(app))
              m_lastExternalApplication = target;
      }))
{
}

std::optional<TargetApplication> InsertionTargets::preferred() const
{
    const auto front = m_workspace.frontmostApplication();
    if (!front && !m_workspace.capabilities().knowsFront)
        return std::nullopt;
    const auto target = externalTarget(front);
    return target ? target : m_lastExternalApplication;
}

std::optional<TargetApplication> InsertionTargets::forHotbarSlot(const AppSettings &settings,
                                                                 int slotIndex) const
{
    const HotbarSlotAssignment slot = settings.assignment(slotIndex);
    if (!slot.isAssigned())
        return std::nullopt;
    const QString &identifier = *slot.bundleIdentifier;
    TargetApplication target{0, identifier, slot.appName};

    const QList<RunningApplication> instances = m_workspace.runningApplications(identifier);
    const auto running =
        std::find_if(instances.begin(), instances.end(),
                     [](const RunningApplication &app) { return !app.isTerminated; });
    if (running != instances.end()) {
        if (const auto instance = running->asTarget())
            target.processIdentifier = instance->processIdentifier;
        if (!target.localizedName)
            target.localizedName = running->localizedName;
    }
    return target;
}

} // namespace kestrova
