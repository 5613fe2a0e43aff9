#include "Platform/Linux/Sandbox/MicrophoneAdvice.h"

namespace kestrova {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

namespace {

QString flatpakRefusal(const Sandbox &sandbox)
{
    if (!sandbox.reachesSound) {
        return u"Microphone access is denied for Kestrova, because its sandbox has no sound.\n"
               "Run `flatpak override --user --socket=pulseaudio %1` in a terminal, relaunch "
               "Kestrova, and request again."_s.arg(sandbox.name);
    }
    return u"Microphone access is denied for Kestrova. Enable it in the privacy settings of your "
           "desktop.\nIf Kestrova is missing there, run `flatpak permission-set devices "
           "microphone %1 yes` in a terminal, and request again."_s.arg(sandbox.name);
}

std::optional<QString> flatpakAdvice(const Sandbox &sandbox, State state)
{
    switch (state) {
    case State::denied:
        return flatpakRefusal(sandbox);
    case State::notDetermined:
        return u"The desktop did not finish the microphone permission prompt yet.\nRequest again. "
               "If it does not appear, run `flatpak permission-set devices microphone %1 yes` in "
               "a terminal."_s.arg(sandbox.name);
    case State::unknown:
        return u"Microphone permission status is unknown, because the desktop's permission store "
               "does not answer.\nLog out and in again. If that does not help, run `flatpak "
               "permission-show %1` in a terminal to see what it says."_s.arg(sandbox.name);
    default:
        return std::nullopt;
    }
}

std::optional<QString> snapAdvice(const Sandbox &sandbox, State state)
{
    switch (state) {
    case State::denied:
    case State::notDetermined:
        return u"Microphone access is denied for Kestrova.\nRun `sudo snap connect "
               "%1:audio-record` in a terminal, and request again."_s.arg(sandbox.name);
    case State::unknown:
        return u"Microphone permission status is unknown, because snapd does not answer.\nRun "
               "`snap connections %1` in a terminal: audio-record has to be connected."_s.arg(
                   sandbox.name);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<QString> microphoneAdvice(const Sandbox &sandbox, State state)
{
    if (state == State::restricted)
        return u"Microphone access is restricted by the policy of this system."_s;
    return sandbox.kind == Sandbox::Kind::flatpak ? flatpakAdvice(sandbox, state)
                                                  : snapAdvice(sandbox, state);
}

} // namespace kestrova
