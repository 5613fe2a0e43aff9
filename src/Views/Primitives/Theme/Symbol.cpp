#include "Views/Primitives/Theme/Symbol.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr qreal largestSmallSize = 11;

QByteArray drawing(const QString &name, qreal size)
{
    QFile small(u":/symbols/small/%1.svg"_s.arg(name));
    if (size <= largestSmallSize && small.open(QIODevice::ReadOnly))
        return small.readAll();
    QFile file(u":/symbols/%1.svg"_s.arg(name));
    if (file.open(QIODevice::ReadOnly))
        return file.readAll();
    qWarning("There is no symbol \"%s\".", qUtf8Printable(name));
    return {};
}

} // namespace

Symbol::Symbol(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setImplicitSize(m_size, m_size);
    connect(this, &Symbol::changed, this, &Symbol::refresh);
}

void Symbol::refresh()
{
    setImplicitSize(m_size, m_size);
    update();
}

void Symbol::paint(QPainter *painter)
{
    if (m_name.isEmpty())
        return;
    QByteArray svg = drawing(m_name, m_size);
    svg.replace("#000", m_color.name(QColor::HexRgb).toLatin1());
    if (m_strokeWidth > 0)
        svg.replace(R"(stroke-width="2")",
                    R"(stroke-width=")" + QByteArray::number(m_strokeWidth) + '"');
    painter->setOpacity(m_color.alphaF());
    QSvgRenderer(svg).render(painter, QRectF(0, 0, width(), height()));
}

} // namespace kestrova
