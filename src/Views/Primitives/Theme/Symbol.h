#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace kestrova {

/// A symbol of the icon set in one colour, drawn at the resolution of its screen.
class Symbol : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    /// As the file is called; empty draws nothing.
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    /// Width and height. Up to 11 the heavier drawing is taken where there is one.
    Q_PROPERTY(qreal size MEMBER m_size NOTIFY changed)
    /// Of the main strokes, on the 24 pixel grid; 0: as they were drawn.
    Q_PROPERTY(qreal strokeWidth MEMBER m_strokeWidth NOTIFY changed)

public:
    explicit Symbol(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    void refresh();

    QString m_name;
    QColor m_color = Qt::black;
    qreal m_size = 16;
    qreal m_strokeWidth = 0;
};

} // namespace kestrova
