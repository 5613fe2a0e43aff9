#pragma once

#include <QString>

namespace kestrova {

/// Tells that the program's windows cannot be shown, on standard error and in a plain window that
/// needs nothing of what they need. From there the program can be quit, which is otherwise done in
/// the popover. One at a time: a new reason replaces the one that is shown. None where the process
/// may not open the files that any window needs. Main thread.
void tellFailure(const QString &reason);

} // namespace kestrova
