#pragma once

#include "ViewModels/AppState.h"

#include <QString>

namespace kestrova {

/// What a card shows of a text: its beginning, which is far more than anybody reads there, without
/// the empty lines that a tool's output ends with. Laying out a megabyte would take seconds and a
/// hundred megabytes of memory.
QString shownPart(const QString &text);

/// The same of the last error, for each window that shows it; empty when there is none.
QString shownError(const AppState &state);

} // namespace kestrova
