#include "Views/Scenes/ApplicationIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Up to this size the plainer drawing is the one that can be read.
constexpr int largestSmallSize = 24;

QPixmap drawing(int size)
{
    const QString name = size <= largestSmallSize ? u"kestrova-small"_s : u"kestrova"_s;
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(u":/symbols/%1.svg"_s.arg(name)).render(&painter);
    return pixmap;
}

} // namespace

QIcon applicationIcon()
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(drawing(size));
    return icon;
}

} // namespace kestrova
