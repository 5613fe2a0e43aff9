#include "ViewModels/Texts/MicrophoneHints.h"

namespace kestrova {

using namespace Qt::StringLiterals;

QString microphoneHint(const AppState &state)
{
    if (!state.permissions.get().microphoneAuthorized)
        return {};
    switch (state.microphone.get()) {
    case MicrophoneCondition::unknown:
    case MicrophoneCondition::available:
        return {};
    case MicrophoneCondition::muted:
        return u"The microphone is muted. Turn it up in the sound settings."_s;
    case MicrophoneCondition::monitorOnly:
        return u"There is no microphone, only what is being played could be recorded. Connect one, "
               "or turn it on in the sound settings."_s;
    case MicrophoneCondition::noDevice:
        return u"There is no microphone. Connect one, or turn it on in the sound settings."_s;
    case MicrophoneCondition::noServer:
        return u"The sound server does not answer. Start PipeWire or PulseAudio, or log out and in "
               "again."_s;
    }
    Q_UNREACHABLE();
}

QString recordingProblemText(RecordingProblem problem)
{
    switch (problem) {
    case RecordingProblem::fileNotWritten:
        return u"The recording could not be written any further: the disk may be full. Only what "
               "was said before that is used."_s;
    case RecordingProblem::microphoneLost:
        return u"The microphone or the sound server went away during the recording. Only what was "
               "said before that is used."_s;
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
