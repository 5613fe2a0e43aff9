#include "ViewModels/AppState.h"

namespace kestrova {

AppState::AppState(const AppSettings &initialSettings)
    : settings(*this, &AppState::settingsChanged, initialSettings)
{
}

void AppState::showError(const QString &message)
{
    lastError.announce(message);
    state.announce(DictationState::error(message));
}

void AppState::clearErrorIfNeeded()
{
    if (state.get().kind == DictationState::Kind::error)
        state.set(DictationState::idle());
    lastError.set(std::nullopt);
}

} // namespace kestrova
