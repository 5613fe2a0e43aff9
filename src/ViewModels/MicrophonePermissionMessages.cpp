#include "ViewModels/MicrophonePermissionMessages.h"

namespace kestrova {

using namespace Qt::StringLiterals;

QString microphonePermissionRecoveryMessage(MicrophoneAuthorizationState status,
                                            const QString &bundleIdentifier)
{
    switch (status) {
    case MicrophoneAuthorizationState::authorized:
        return u"Microphone permission granted."_s;
    case MicrophoneAuthorizationState::denied:
        return u"Microphone access is denied for Kestrova. Enable it in System Settings > Privacy "
               "& Security > Microphone.\nIf Kestrova is missing from that list, run `tccutil "
               "reset Microphone %1` in Terminal, relaunch Kestrova, and request again."_s.arg(
                   bundleIdentifier);
    case MicrophoneAuthorizationState::restricted:
        return u"Microphone access is restricted by macOS policy (for example Screen Time or "
               "MDM)."_s;
    case MicrophoneAuthorizationState::notDetermined:
        return u"macOS did not finish the microphone permission prompt yet.\nMake sure you "
               "launched `/Applications/Kestrova.app`, then request again. If it still does not "
               "appear, run `tccutil reset Microphone %1` and relaunch Kestrova."_s.arg(
                   bundleIdentifier);
    case MicrophoneAuthorizationState::unknown:
        return u"Microphone permission status is unknown.\nOpen System Settings > Privacy & "
               "Security > Microphone. If Kestrova is missing, run `tccutil reset Microphone %1` "
               "and relaunch."_s.arg(bundleIdentifier);
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
