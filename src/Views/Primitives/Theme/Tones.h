#pragma once

#include <QObject>
#include <qqmlregistration.h>

/// How severe what a card says is.
namespace SurfaceCardTone {
Q_NAMESPACE
QML_ELEMENT
enum Value { Standard, Warning, Danger };
Q_ENUM_NS(Value)
} // namespace SurfaceCardTone

/// What a pill's colour says.
namespace StatusPillTone {
Q_NAMESPACE
QML_ELEMENT
enum Value { Neutral, Success, Warning, Danger, Recording };
Q_ENUM_NS(Value)
} // namespace StatusPillTone
