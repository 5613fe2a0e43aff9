#include "Views/DictationStatus.h"

namespace kestrova {

using namespace Qt::StringLiterals;

PillStatus dictationStatus(const DictationState &state)
{
    const QString text = state.displayText();
    switch (state.kind) {
    case DictationState::Kind::idle:
        return {text, StatusPillTone::Neutral, u"checkmark"_s};
    case DictationState::Kind::recording:
        return {text, StatusPillTone::Recording, u"waveform"_s};
    case DictationState::Kind::processing:
        return {text, StatusPillTone::Warning, u"hourglass"_s};
    case DictationState::Kind::error:
        return {text, StatusPillTone::Danger, u"xmark"_s};
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
