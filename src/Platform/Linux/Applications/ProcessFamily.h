#pragma once

#include <QtGlobal>

namespace kestrova {

/// Whether a process belongs to the application that another one is: the same process, one that it
/// started, or one that runs the same program, as the processes of a browser do. Any thread.
bool isOfApplication(qint32 process, qint32 application);

} // namespace kestrova
