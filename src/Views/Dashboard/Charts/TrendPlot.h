#pragma once

#include "Views/Dashboard/Charts/TrendChart.h"
#include "Views/Dashboard/Charts/TrendLayout.h"

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QVariantAnimation>

namespace kestrova {

/// Draws a trend chart: axes with their labels, and bars or a line. Which mark is pointed at is up
/// to its user. Time runs from left to right in every language.
class TrendPlot : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Marks move from the chart before to this one.
    Q_PROPERTY(kestrova::TrendChart chart READ chart WRITE setChart NOTIFY chartChanged)
    Q_PROPERTY(int markCount READ markCount NOTIFY chartChanged)
    Q_PROPERTY(bool isLine MEMBER m_isLine NOTIFY styleChanged)
    /// The mark that is pointed at; below 0: none.
    Q_PROPERTY(int currentMark MEMBER m_currentMark NOTIFY currentMarkChanged)
    Q_PROPERTY(QString readOut READ readOut NOTIFY readOutChanged)
    /// The middle of the current mark, in the item.
    Q_PROPERTY(double currentCentre READ currentCentre NOTIFY readOutChanged)
    Q_PROPERTY(int duration MEMBER m_duration NOTIFY styleChanged) ///< of a move, in milliseconds
    Q_PROPERTY(QFont labelFont MEMBER m_labelFont NOTIFY styleChanged)
    Q_PROPERTY(QColor markColor MEMBER m_markColor NOTIFY styleChanged)
    /// Of the bars beside the one that is pointed at.
    Q_PROPERTY(QColor softMarkColor MEMBER m_softMarkColor NOTIFY styleChanged)
    Q_PROPERTY(QColor surfaceColor MEMBER m_surfaceColor NOTIFY styleChanged)
    Q_PROPERTY(QColor labelColor MEMBER m_labelColor NOTIFY styleChanged)
    Q_PROPERTY(QColor gridColor MEMBER m_gridColor NOTIFY styleChanged)
    Q_PROPERTY(QColor baseLineColor MEMBER m_baseLineColor NOTIFY styleChanged)
    Q_PROPERTY(QColor guideColor MEMBER m_guideColor NOTIFY styleChanged)

public:
    explicit TrendPlot(QQuickItem *parent = nullptr);

    TrendChart chart() const { return m_chart; }
    void setChart(const TrendChart &chart);
    int markCount() const { return int(m_chart.marks.size()); }
    QString readOut() const;
    double currentCentre() const;

    /// Below 0: there is none.
    Q_INVOKABLE int markAt(double x, double y) const;

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void chartChanged();
    void styleChanged();
    void currentMarkChanged();
    void readOutChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    bool hasCurrentMark() const;
    TrendLayout layout() const;
    /// Of a mark, as a share of the plot's height, at this moment of a move.
    double heightOf(qsizetype mark) const;
    QList<double> heights() const;
    void paintValueAxis(QPainter &painter, const QRectF &plot) const;
    void paintTimeAxis(QPainter &painter, const TrendLayout &layout) const;
    void paintBars(QPainter &painter, const TrendLayout &layout) const;
    void paintLine(QPainter &painter, const TrendLayout &layout) const;
    void paintPoint(QPainter &painter, QPointF centre, bool isCurrent) const;

    TrendChart m_chart;
    QList<double> m_oldHeights;
    QVariantAnimation m_move; ///< from 0, the old heights, to 1, the chart's
    int m_currentMark = -1;
    bool m_isLine = false;
    int m_duration = 0;
    QFont m_labelFont;
    QColor m_markColor;
    QColor m_softMarkColor;
    QColor m_surfaceColor;
    QColor m_labelColor;
    QColor m_gridColor;
    QColor m_baseLineColor;
    QColor m_guideColor;
};

} // namespace kestrova
