#include "Views/Dashboard/Charts/MonotoneCurve.h"

namespace kestrova {

namespace {

double slope(QPointF from, QPointF to)
{
    return (to.y() - from.y()) / (to.x() - from.x());
}

/// Level at an extreme, else the harmonic mean: at most twice the lesser slope, which is what keeps
/// the curve monotone.
double tangent(double slopeBefore, double slopeAfter)
{
    if (slopeBefore * slopeAfter <= 0)
        return 0;
    return 2 * slopeBefore * slopeAfter / (slopeBefore + slopeAfter);
}

double tangentAt(qsizetype i, const QList<QPointF> &points)
{
    const qsizetype last = points.size() - 1;
    if (i == 0)
        return slope(points[0], points[1]);
    if (i == last)
        return slope(points[last - 1], points[last]);
    return tangent(slope(points[i - 1], points[i]), slope(points[i], points[i + 1]));
}

} // namespace

QList<CurveSegment> monotoneCurve(const QList<QPointF> &points)
{
    QList<CurveSegment> curve;
    for (qsizetype i = 1; i < points.size(); ++i) {
        const QPointF from = points[i - 1];
        const QPointF to = points[i];
        const double third = (to.x() - from.x()) / 3;
        curve.append({from + QPointF(third, third * tangentAt(i - 1, points)),
                      to - QPointF(third, third * tangentAt(i, points)), to});
    }
    return curve;
}

} // namespace kestrova
