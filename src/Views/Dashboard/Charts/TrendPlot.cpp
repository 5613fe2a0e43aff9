#include "Views/Dashboard/Charts/TrendPlot.h"

#include "Views/Dashboard/Charts/MonotoneCurve.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// docs/design-guide.md, charts
constexpr double readOutStrip = 30;
constexpr double valueLabelColumn = 40;
constexpr double valueLabelGap = 8;
constexpr double trailingMargin = 8;
constexpr double tickLength = 5;
constexpr double tickLabelGap = 3;
constexpr double axisTitleGap = 6;
constexpr double barRadius = 3;
constexpr double lineWidth = 3;
constexpr double pointSize = 7;
constexpr double currentPointSize = 10;
constexpr double currentPointRing = 2;

/// Rounded at the top only.
QPainterPath barPath(const QRectF &bar)
{
    const double radius = std::min({barRadius, bar.width() / 2, bar.height()});
    QPainterPath path(bar.bottomLeft());
    path.lineTo(bar.left(), bar.top() + radius);
    path.quadTo(bar.topLeft(), bar.topLeft() + QPointF(radius, 0));
    path.lineTo(bar.right() - radius, bar.top());
    path.quadTo(bar.topRight(), bar.topRight() + QPointF(0, radius));
    path.lineTo(bar.bottomRight());
    path.closeSubpath();
    return path;
}

void paintHorizontal(QPainter &painter, const QRectF &plot, double y, const QColor &color)
{
    painter.fillRect(QRectF(plot.left(), std::round(y), plot.width(), 1), color);
}

} // namespace

TrendPlot::TrendPlot(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    m_move.setStartValue(0.0);
    m_move.setEndValue(1.0);
    m_move.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_move, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(this, &TrendPlot::styleChanged, this, [this] { update(); });
    connect(this, &TrendPlot::styleChanged, this, &TrendPlot::readOutChanged);
    connect(this, &TrendPlot::chartChanged, this, &TrendPlot::readOutChanged);
    connect(this, &TrendPlot::currentMarkChanged, this, &TrendPlot::readOutChanged);
    connect(this, &TrendPlot::readOutChanged, this, [this] { update(); });
}

void TrendPlot::setChart(const TrendChart &chart)
{
    if (chart == m_chart)
        return;
    const bool isFirst = m_chart.marks.isEmpty();
    m_oldHeights = resampled(heights(), chart.marks.size());
    m_chart = chart;
    m_move.stop();
    m_move.setDuration(isFirst ? 0 : m_duration);
    m_move.start();
    Q_EMIT chartChanged();
}

QString TrendPlot::readOut() const
{
    return hasCurrentMark() ? m_chart.marks[m_currentMark].readOut : QString();
}

double TrendPlot::currentCentre() const
{
    return hasCurrentMark() ? layout().centre(m_currentMark) : 0;
}

int TrendPlot::markAt(double x, double y) const
{
    return int(layout().markAt({x, y}).value_or(-1));
}

void TrendPlot::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    Q_EMIT readOutChanged();
}

bool TrendPlot::hasCurrentMark() const
{
    return m_currentMark >= 0 && m_currentMark < markCount();
}

TrendLayout TrendPlot::layout() const
{
    const QFontMetricsF metrics(m_labelFont);
    double widest = 0;
    for (const QString &label : m_chart.axis.labels())
        widest = std::max(widest, metrics.horizontalAdvance(label));
    const double left = std::max(valueLabelColumn, std::ceil(widest) + valueLabelGap);
    const double bottom =
        height() - tickLength - tickLabelGap - axisTitleGap - 2 * std::ceil(metrics.height());
    return {QRectF(QPointF(left, readOutStrip), QPointF(width() - trailingMargin, bottom)),
            m_chart.marks.size()};
}

double TrendPlot::heightOf(qsizetype mark) const
{
    const double height = std::max(0.0, double(m_chart.marks[mark].words) / m_chart.axis.top());
    const double progress = m_move.currentValue().toDouble();
    return m_oldHeights[mark] + (height - m_oldHeights[mark]) * progress;
}

QList<double> TrendPlot::heights() const
{
    QList<double> heights;
    for (qsizetype mark = 0; mark < m_chart.marks.size(); ++mark)
        heights.append(heightOf(mark));
    return heights;
}

void TrendPlot::paint(QPainter *painter)
{
    const TrendLayout plotLayout = layout();
    if (!plotLayout.plot.isValid())
        return;
    painter->setFont(m_labelFont);
    paintValueAxis(*painter, plotLayout.plot);
    paintTimeAxis(*painter, plotLayout);
    if (m_isLine)
        paintLine(*painter, plotLayout);
    else
        paintBars(*painter, plotLayout);
}

void TrendPlot::paintValueAxis(QPainter &painter, const QRectF &plot) const
{
    const QFontMetricsF metrics(m_labelFont);
    const QStringList labels = m_chart.axis.labels();
    painter.setPen(m_labelColor);
    painter.drawText(QPointF(0, metrics.ascent() + 2), u"Words"_s);
    for (int line = 0; line < labels.size(); ++line) {
        const double y = plot.bottom() - plot.height() * line / m_chart.axis.stepCount;
        paintHorizontal(painter, plot, y, line == 0 ? m_baseLineColor : m_gridColor);
        painter.drawText(
            QRectF(0, y - metrics.height() / 2, plot.left() - valueLabelGap, metrics.height()),
            Qt::AlignRight | Qt::AlignVCenter, labels[line]);
    }
}

void TrendPlot::paintTimeAxis(QPainter &painter, const TrendLayout &layout) const
{
    const QFontMetricsF metrics(m_labelFont);
    QList<AxisLabel> labels;
    for (qsizetype i = 0; i < m_chart.marks.size(); ++i)
        labels.append(
            {layout.centre(i), std::ceil(metrics.horizontalAdvance(m_chart.marks[i].tickLabel))});
    const auto edges = axisLabelEdges(labels, 0, width());

    const QRectF &plot = layout.plot;
    const double labelLine = plot.bottom() + tickLength + tickLabelGap + metrics.ascent();
    painter.setPen(m_labelColor);
    for (qsizetype i = 0; i < labels.size(); ++i) {
        if (labels[i].width > 0)
            painter.fillRect(QRectF(std::round(labels[i].centre), plot.bottom(), 1, tickLength),
                             m_baseLineColor);
        if (edges[i])
            painter.drawText(QPointF(*edges[i], labelLine), m_chart.marks[i].tickLabel);
    }
    const QString title = u"Time"_s;
    painter.drawText(QPointF(plot.right() - metrics.horizontalAdvance(title),
                             labelLine + metrics.height() + axisTitleGap),
                     title);
}

void TrendPlot::paintBars(QPainter &painter, const TrendLayout &layout) const
{
    for (qsizetype mark = 0; mark < layout.markCount; ++mark) {
        const bool isSoft = hasCurrentMark() && mark != m_currentMark;
        painter.fillPath(barPath(layout.bar(mark, heightOf(mark))),
                         isSoft ? m_softMarkColor : m_markColor);
    }
}

void TrendPlot::paintLine(QPainter &painter, const TrendLayout &layout) const
{
    QList<QPointF> points;
    for (qsizetype mark = 0; mark < layout.markCount; ++mark)
        points.append(layout.point(mark, heightOf(mark)));
    if (points.isEmpty())
        return;

    if (hasCurrentMark()) {
        const double x = std::round(points[m_currentMark].x()) + 0.5;
        painter.setPen(QPen(m_guideColor, 1, Qt::DashLine));
        painter.drawLine(QPointF(x, layout.plot.top()), QPointF(x, layout.plot.bottom()));
    }
    if (m_chart.axis == ValueAxis()) // nothing to draw a line of
        return;
    QPainterPath path(points.first());
    for (const CurveSegment &segment : monotoneCurve(points))
        path.cubicTo(segment.firstControl, segment.secondControl, segment.end);
    painter.strokePath(path,
                       QPen(m_markColor, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (qsizetype mark = 0; mark < points.size(); ++mark)
        paintPoint(painter, points[mark], mark == m_currentMark);
}

void TrendPlot::paintPoint(QPainter &painter, QPointF centre, bool isCurrent) const
{
    const double radius = (isCurrent ? currentPointSize : pointSize) / 2;
    painter.setPen(Qt::NoPen);
    if (isCurrent) {
        painter.setBrush(m_surfaceColor);
        painter.drawEllipse(centre, radius + currentPointRing, radius + currentPointRing);
    }
    painter.setBrush(m_markColor);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace kestrova
