#include "Models/Dictation/DictationState.h"

namespace kestrova {

QString DictationState::displayText() const
{
    switch (kind) {
    case Kind::idle:
        return QStringLiteral("Ready");
    case Kind::recording:
        return QStringLiteral("Recording...");
    case Kind::processing:
        return QStringLiteral("AI Processing...");
    case Kind::error:
        return QStringLiteral("Error occurred");
    }
    Q_UNREACHABLE();
}

} // namespace kestrova
