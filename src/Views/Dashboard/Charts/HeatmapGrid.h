#pragma once

#include "Views/Dashboard/Charts/HeatmapChart.h"
#include "Views/Dashboard/Charts/HeatmapLayout.h"

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>

namespace kestrova {

/// Draws a heatmap: its cells under the names of the months. Which cell is pointed at is up to its
/// user. Time runs from left to right in every language.
class HeatmapGrid : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kestrova::HeatmapChart chart MEMBER m_chart NOTIFY chartChanged)
    /// The cells become smaller where the regular ones do not fit; what does not fit then is wider.
    Q_PROPERTY(double availableWidth MEMBER m_availableWidth NOTIFY styleChanged)
    /// The cell that is pointed at; below 0: none.
    Q_PROPERTY(int currentCell MEMBER m_currentCell NOTIFY currentCellChanged)
    Q_PROPERTY(QString readOut READ readOut NOTIFY readOutChanged)
    Q_PROPERTY(QRectF currentRect READ currentRect NOTIFY readOutChanged)
    Q_PROPERTY(double cell READ cell NOTIFY layoutChanged)
    Q_PROPERTY(double gap READ gap NOTIFY layoutChanged)
    Q_PROPERTY(double cellsTop READ cellsTop NOTIFY layoutChanged) ///< below the month names
    Q_PROPERTY(QFont labelFont MEMBER m_labelFont NOTIFY styleChanged)
    Q_PROPERTY(QColor labelColor MEMBER m_labelColor NOTIFY styleChanged)
    Q_PROPERTY(QList<QColor> levelColors MEMBER m_levelColors NOTIFY styleChanged) ///< 0 to 4
    Q_PROPERTY(QColor untrackedColor MEMBER m_untrackedColor NOTIFY styleChanged)
    Q_PROPERTY(QColor outlineColor MEMBER m_outlineColor NOTIFY styleChanged)
    Q_PROPERTY(QColor focusColor MEMBER m_focusColor NOTIFY styleChanged)

public:
    explicit HeatmapGrid(QQuickItem *parent = nullptr);

    QString readOut() const;
    QRectF currentRect() const;
    double cell() const { return m_layout.cell; }
    double gap() const { return m_layout.gap; }
    double cellsTop() const;

    /// A tracked cell; below 0: there is none.
    Q_INVOKABLE int cellAt(double x, double y) const;
    /// Where an arrow key leads to from the current cell; below 0: nowhere.
    Q_INVOKABLE int neighbour(int weeks, int days) const;

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void chartChanged();
    void currentCellChanged();
    void readOutChanged();
    void layoutChanged();
    void styleChanged();

private:
    void relayout();
    bool hasCurrentCell() const;
    void paintMonths(QPainter &painter) const;
    void paintCells(QPainter &painter) const;
    void paintCurrentCell(QPainter &painter) const;
    const QColor &colorOf(const HeatmapMark &mark) const;

    HeatmapChart m_chart;
    HeatmapLayout m_layout;
    double m_availableWidth = 0;
    int m_currentCell = -1;
    QFont m_labelFont;
    QColor m_labelColor;
    QList<QColor> m_levelColors;
    QColor m_untrackedColor;
    QColor m_outlineColor;
    QColor m_focusColor;
};

} // namespace kestrova
