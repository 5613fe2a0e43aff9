#pragma once

#include <QIcon>

namespace kestrova {

/// The program's sign on its plate, for title bars and task lists.
QIcon applicationIcon();

} // namespace kestrova
