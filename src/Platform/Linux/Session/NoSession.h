#pragma once

#include "Platform/Linux/Session/DesktopSession.h"

namespace kestrova {

/// Stands in where there is no desktop: nothing runs there, and nothing can be sent.
class NoSession final : public DesktopSession
{
public:
    /// The reason why there is none, for prepareApplication().
    explicit NoSession(const QString &reason) : m_reason(reason) {}

    /// Always throws PlatformError, with the reason.
    std::shared_ptr<void> prepareApplication() override;

    std::unique_ptr<Workspace> makeWorkspace() override;
    std::unique_ptr<DesktopAppearance> makeAppearance() override;
    std::unique_ptr<Windowing> makeWindowing() override;
    /// One that throws PlatformError whenever it is given a text.
    std::unique_ptr<Pasteboard> makePasteboard() override;
    std::unique_ptr<KeyEventPosting> makeKeyEventPosting() override;
    std::unique_ptr<KeyEventMonitoring> makeKeyEventMonitoring() override;

    ApplicationWindows &applicationWindows() override { return m_windows; }
    Access keyboardAccess() override { return Access::unavailable; }
    QByteArray newStartupId() override;

private:
    class NoWindows final : public ApplicationWindows
    {
    public:
        QList<ApplicationWindow> all() override { return {}; }
        std::optional<ApplicationWindow> active() override { return std::nullopt; }
        void activate(quint64) override {}
    };

    const QString m_reason;
    NoWindows m_windows;
};

/// For a session whose clipboard cannot be used: throws PlatformError whenever it is given a text.
std::unique_ptr<Pasteboard> makeMissingPasteboard();

} // namespace kestrova
