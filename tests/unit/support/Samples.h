#pragma once

#include <QByteArray>

namespace kestrova {

/// The recorded document of this name; throws std::runtime_error when there is none.
QByteArray sample(const char *name);

} // namespace kestrova
