#include "Views/Dashboard/Charts/HeatmapGrid.h"

#include <QFontMetricsF>
#include <QPainter>

namespace kestrova {

namespace {

// docs/design-guide.md, heatmap
constexpr double monthGap = 5;
constexpr double cellRadius = 3;
constexpr double outlineWidth = 0.5;
constexpr double focusWidth = 1.5;

} // namespace

HeatmapGrid::HeatmapGrid(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &HeatmapGrid::chartChanged, this, &HeatmapGrid::relayout);
    connect(this, &HeatmapGrid::styleChanged, this, &HeatmapGrid::relayout);
    connect(this, &HeatmapGrid::currentCellChanged, this, &HeatmapGrid::readOutChanged);
    connect(this, &HeatmapGrid::readOutChanged, this, [this] { update(); });
}

void HeatmapGrid::relayout()
{
    const qsizetype columns = m_chart.monthLabels.size();
    m_layout = HeatmapLayout::fitting(m_availableWidth, columns);
    setImplicitSize(m_layout.width(columns), cellsTop() + m_layout.height());
    Q_EMIT layoutChanged();
    Q_EMIT readOutChanged();
}

QString HeatmapGrid::readOut() const
{
    return hasCurrentCell() ? m_chart.marks[m_currentCell].readOut : QString();
}

QRectF HeatmapGrid::currentRect() const
{
    return hasCurrentCell() ? m_layout.cellRect(m_currentCell).translated(0, cellsTop()) : QRectF();
}

double HeatmapGrid::cellsTop() const
{
    return std::ceil(QFontMetricsF(m_labelFont).height()) + monthGap;
}

int HeatmapGrid::cellAt(double x, double y) const
{
    const auto cell = m_layout.cellAt({x, y - cellsTop()}, m_chart.marks.size());
    return cell && m_chart.marks[*cell].level != HeatmapMark::untracked ? int(*cell) : -1;
}

int HeatmapGrid::neighbour(int weeks, int days) const
{
    const auto from = hasCurrentCell() ? std::optional<qsizetype>(m_currentCell) : std::nullopt;
    return int(heatmapNeighbour(m_chart, from, weeks, days).value_or(-1));
}

void HeatmapGrid::paint(QPainter *painter)
{
    paintMonths(*painter);
    painter->translate(0, cellsTop());
    paintCells(*painter);
    if (hasCurrentCell())
        paintCurrentCell(*painter);
}

bool HeatmapGrid::hasCurrentCell() const
{
    return m_currentCell >= 0 && m_currentCell < m_chart.marks.size();
}

void HeatmapGrid::paintMonths(QPainter &painter) const
{
    const QFontMetricsF metrics(m_labelFont);
    QList<double> widths;
    for (const QString &label : m_chart.monthLabels)
        widths.append(metrics.horizontalAdvance(label));
    const QList<bool> shown = m_layout.shownLabels(m_chart.monthLabels, widths);
    painter.setFont(m_labelFont);
    painter.setPen(m_labelColor);
    for (qsizetype column = 0; column < shown.size(); ++column) {
        if (shown[column])
            painter.drawText(QPointF(double(column) * m_layout.pitch(), metrics.ascent()),
                             m_chart.monthLabels[column]);
    }
}

void HeatmapGrid::paintCells(QPainter &painter) const
{
    constexpr double inset = outlineWidth / 2;
    painter.setPen(QPen(m_outlineColor, outlineWidth));
    for (qsizetype i = 0; i < m_chart.marks.size(); ++i) {
        painter.setBrush(colorOf(m_chart.marks[i]));
        painter.drawRoundedRect(m_layout.cellRect(i).adjusted(inset, inset, -inset, -inset),
                                cellRadius, cellRadius);
    }
}

void HeatmapGrid::paintCurrentCell(QPainter &painter) const
{
    constexpr double inset = focusWidth / 2;
    painter.setPen(QPen(m_focusColor, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(m_layout.cellRect(m_currentCell).adjusted(inset, inset, -inset, -inset),
                            cellRadius, cellRadius);
}

const QColor &HeatmapGrid::colorOf(const HeatmapMark &mark) const
{
    const bool hasColor = mark.level >= 0 && mark.level < m_levelColors.size();
    return hasColor ? m_levelColors[mark.level] : m_untrackedColor;
}

} // namespace kestrova
