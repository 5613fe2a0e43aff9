#pragma once

#include "Platform/Linux/Sandbox/MicrophonePortal.h"
#include "Platform/Linux/Sandbox/Sandbox.h"
#include "Platform/SystemAccess.h"

#include <QObject>

#include <chrono>

namespace kestrova {

/// Only a sandbox keeps a program from recording. Whether the keyboard is open to every program is
/// up to the desktop session.
class LinuxSystemAccess final : public SystemAccess
{
public:
    /// How long microphoneState() may wait for an answer from outside the sandbox.
    static constexpr std::chrono::milliseconds answerLimit{500};

    /// currentDesktop is the value of $XDG_CURRENT_DESKTOP; keyboardAccess tells whether the
    /// desktop session lets keys be observed and sent.
    LinuxSystemAccess(const std::optional<Sandbox> &sandbox, const QString &currentDesktop,
                      std::function<Access()> keyboardAccess);

    /// A Flatpak needs the sound server and no refusal by the user, a snap its plug "audio-record".
    MicrophoneAuthorizationState microphoneState() override;
    /// Only a Flatpak has somebody to ask; elsewhere the present state is the answer. A granted
    /// request holds as long as this object, also where the desktop is told to ask every time.
    void requestMicrophone(std::function<void(bool isGranted)> completion) override;
    QList<QUrl> microphoneSettingsPages() override;
    std::optional<QString> microphoneAdvice(MicrophoneAuthorizationState state) override;

    Access accessibility() override { return m_keyboardAccess(); }
    /// There is no such question.
    void promptForAccessibility() override {}
    /// Only what a Flatpak may do can change.
    void observe(std::function<void()> changed) override;

private:
    MicrophoneAuthorizationState flatpakState();

    const std::optional<Sandbox> m_sandbox;
    const QString m_currentDesktop;
    const std::function<Access()> m_keyboardAccess;
    bool m_wasGranted = false;
    QObject m_requests; // the owner of those under way
    std::unique_ptr<MicrophonePortal::DecisionWatch> m_watch;
};

} // namespace kestrova
