#pragma once

#include "Platform/Linux/Sandbox.h"
#include "Platform/SystemAccess.h"

#include <QObject>

#include <chrono>

namespace kestrova {

class X11Connection;

/// Only a sandbox keeps a program from recording. The keyboard is open to every program of the
/// display, if the display has the extensions for it.
class LinuxSystemAccess final : public SystemAccess
{
public:
    /// How long microphoneState() may wait for an answer from outside the sandbox.
    static constexpr std::chrono::milliseconds answerLimit{500};

    /// The display outlives this. currentDesktop is the value of $XDG_CURRENT_DESKTOP.
    LinuxSystemAccess(const std::optional<Sandbox> &sandbox, const QString &currentDesktop,
                      X11Connection &display);

    /// A Flatpak needs the sound server and no refusal by the user, a snap its plug "audio-record".
    MicrophoneAuthorizationState microphoneState() override;
    /// Only a Flatpak has somebody to ask; elsewhere the present state is the answer. A granted
    /// request holds as long as this object, also where the desktop is told to ask every time.
    void requestMicrophone(std::function<void(bool isGranted)> completion) override;
    QList<QUrl> microphoneSettingsPages() override;
    std::optional<QString> microphoneAdvice(MicrophoneAuthorizationState state) override;

    /// Whether the display has the extensions XTEST and RECORD.
    bool isAccessibilityTrusted() override;
    /// X11 has no such question.
    void promptForAccessibility() override {}

private:
    MicrophoneAuthorizationState flatpakState();

    const std::optional<Sandbox> m_sandbox;
    const QString m_currentDesktop;
    X11Connection &m_display;
    bool m_wasGranted = false;
    QObject m_requests; // the owner of those under way
};

} // namespace kestrova
