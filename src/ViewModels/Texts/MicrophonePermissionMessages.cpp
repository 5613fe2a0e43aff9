#include "ViewModels/Texts/MicrophonePermissionMessages.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QString known(const std::optional<QString> &bundleIdentifier)
{
    return bundleIdentifier.value_or(u"com.kestrova.app"_s);
}

} // namespace

QString microphonePermissionRecoveryMessage(MicrophoneAuthorizationState status,
                                            const std::optional<QString> &bundleIdentifier)
{
    switch (status) {
    case MicrophoneAuthorizationState::authorized:
        return u"Microphone permission granted."_s;
    case MicrophoneAuthorizationState::denied:
        return u"Microphone access is denied for Kestrova. Enable it in System Settings > Privacy "
               "& Security > Microphone.\nIf Kestrova is missing from that list, run `tccutil "
               "reset Microphone %1` in Terminal, relaunch Kestrova, and request again."_s.arg(
                   known(bundleIdentifier));
    case MicrophoneAuthorizationState::restricted:
        return u"Microphone access is restricted by macOS policy (for example Screen Time or "
               "MDM)."_s;
    case MicrophoneAuthorizationState::notDetermined:
        return u"macOS did not finish the microphone permission prompt yet.\nMake sure you "
               "launched `/Applications/Kestrova.app`, then request again. If it still does not "
               "appear, run `tccutil reset Microphone %1` and relaunch Kestrova."_s.arg(
                   known(bundleIdentifier));
    case MicrophoneAuthorizationState::unknown:
        return u"Microphone permission status is unknown.\nOpen System Settings > Privacy & "
               "Security > Microphone. If Kestrova is missing, run `tccutil reset Microphone %1` "
               "and relaunch."_s.arg(known(bundleIdentifier));
    }
    Q_UNREACHABLE();
}

QString microphoneRecoveryMessage(const Platform &platform, MicrophoneAuthorizationState status)
{
    const auto advice = platform.systemAccess->microphoneAdvice(status);
    return advice ? *advice
                  : microphonePermissionRecoveryMessage(status, platform.bundle.identifier);
}

MicrophoneAdvice microphoneAdvice(const Platform &platform, MicrophoneAuthorizationState status)
{
    if (const auto advice = platform.systemAccess->microphoneAdvice(status))
        return {*advice, {}};
    return {microphonePermissionStatusMessage(status),
            microphonePermissionHint(platform.bundle.identifier)};
}

QString microphonePermissionStatusMessage(MicrophoneAuthorizationState status)
{
    switch (status) {
    case MicrophoneAuthorizationState::authorized:
        return u"Microphone permission granted."_s;
    case MicrophoneAuthorizationState::denied:
        return u"Microphone permission was denied for this app in macOS privacy settings."_s;
    case MicrophoneAuthorizationState::restricted:
        return u"Microphone permission is restricted by system policy (for example Screen Time or "
               "MDM)."_s;
    case MicrophoneAuthorizationState::notDetermined:
        return u"macOS has not completed the microphone permission flow for this app yet."_s;
    case MicrophoneAuthorizationState::unknown:
        return u"Microphone permission status is unknown."_s;
    }
    Q_UNREACHABLE();
}

QString microphonePermissionHint(const std::optional<QString> &bundleIdentifier)
{
    return u"If Kestrova is missing in Microphone settings: `tccutil reset Microphone %1`"_s.arg(
        known(bundleIdentifier));
}

} // namespace kestrova
