#pragma once

#include <QList>
#include <QPointF>

namespace kestrova {

/// One Bézier segment; it begins where the one before ends.
struct CurveSegment
{
    QPointF firstControl;
    QPointF secondControl;
    QPointF end;
};

/// A smooth curve through points of growing x that never leaves the range of y between two
/// neighbouring points (monotone cubic interpolation after Fritsch and Carlson, tangents as the
/// harmonic mean of the neighbouring slopes). Empty for fewer than two points.
QList<CurveSegment> monotoneCurve(const QList<QPointF> &points);

} // namespace kestrova
