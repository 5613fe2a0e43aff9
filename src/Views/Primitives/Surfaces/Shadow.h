#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace kestrova {

/// The soft shadow of a box that lies in the middle of this item.
class Shadow : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    /// From each side of the item to the box.
    Q_PROPERTY(qreal margin MEMBER m_margin NOTIFY changed)
    /// How far the shadow runs out beyond the box.
    Q_PROPERTY(qreal blur MEMBER m_blur NOTIFY changed)
    /// How far the shadow lies below the box.
    Q_PROPERTY(qreal drop MEMBER m_drop NOTIFY changed)
    /// In the middle of the shadow.
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)

public:
    explicit Shadow(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    qreal m_margin = 0;
    qreal m_blur = 1;
    qreal m_drop = 0;
    QColor m_color = Qt::black;
};

} // namespace kestrova
