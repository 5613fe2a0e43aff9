#pragma once

#include "Models/PermissionSnapshot.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <optional>

namespace kestrova {

/// What the system allows this program to do, and how the user is asked to allow it. Used on the
/// main thread; nothing here waits for the user.
class SystemAccess
{
public:
    virtual ~SystemAccess() = default;

    /// Whether the program may record. Asks nobody.
    virtual MicrophoneAuthorizationState microphoneState() = 0;
    /// Makes the system ask the user. The completion is called later, on the main thread, with the
    /// answer.
    virtual void requestMicrophone(std::function<void(bool isGranted)> completion) = 0;
    /// Where the user changes the decision: addresses for Workspace::openAddress(), the best first.
    virtual QList<QUrl> microphoneSettingsPages() = 0;
    /// What the user can do about this state on this system, where it differs from the advice that
    /// the program gives anyway.
    virtual std::optional<QString> microphoneAdvice(MicrophoneAuthorizationState state) = 0;

    /// Whether the program may observe the keyboard and send keystrokes to other programs.
    virtual bool isAccessibilityTrusted() = 0;
    /// Makes the system ask the user for that trust, where a system has such a question.
    virtual void promptForAccessibility() = 0;
};

} // namespace kestrova
