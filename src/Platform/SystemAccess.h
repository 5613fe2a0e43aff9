#pragma once

#include "Models/PermissionSnapshot.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <optional>

namespace kestrova {

/// Whether the system allows something that it does not allow every program.
enum class Access {
    granted,
    denied,
    notAsked,    ///< the user can be asked
    unavailable, ///< it cannot be had here, whatever the user says
};

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
    virtual Access accessibility() = 0;
    /// Makes the system ask the user for that trust, where a system has such a question.
    virtual void promptForAccessibility() = 0;

    /// Calls the handler when one of the states may have become another one without having been
    /// asked for here. None ends that.
    virtual void observe(std::function<void()> changed) = 0;
};

} // namespace kestrova
