#pragma once

#include "ViewModels/AppState.h"

#include <initializer_list>

namespace kestrova {

/// The model's signal announces a change of any of these members of the state.
template <typename Model>
void announce(Model &model, void (Model::*topic)(), const AppState &state,
              std::initializer_list<void (AppState::*)()> members)
{
    for (const auto member : members)
        QObject::connect(&state, member, &model, topic);
}

} // namespace kestrova
