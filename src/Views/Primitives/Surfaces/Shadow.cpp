#include "Views/Primitives/Surfaces/Shadow.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <numbers>
#include <vector>

namespace kestrova {

namespace {

/// A box from start to end along one axis, blurred: 0 to 1 for each pixel.
std::vector<double> blurred(int length, double start, double end, double deviation)
{
    const auto below = [&](double position) {
        return std::erf(position / (deviation * std::numbers::sqrt2));
    };
    std::vector<double> shares;
    shares.reserve(size_t(length));
    for (int pixel = 0; pixel < length; ++pixel)
        shares.push_back((below(pixel + 0.5 - start) - below(pixel + 0.5 - end)) / 2);
    return shares;
}

} // namespace

Shadow::Shadow(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    connect(this, &Shadow::changed, this, [this] { update(); });
}

void Shadow::paint(QPainter *painter)
{
    // A Gaussian blur of a box is the product of that of its two sides. Round corners make no
    // difference that could be seen, and neither does the resolution of the screen.
    const double deviation = m_blur / 2;
    const QSize size = boundingRect().size().toSize();
    const auto across = blurred(size.width(), m_margin, size.width() - m_margin, deviation);
    const auto down =
        blurred(size.height(), m_margin + m_drop, size.height() - m_margin + m_drop, deviation);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double share = across[size_t(x)] * down[size_t(y)];
            line[x] = qPremultiply(qRgba(m_color.red(), m_color.green(), m_color.blue(),
                                         int(std::lround(share * m_color.alpha()))));
        }
    }
    painter->drawImage(boundingRect(), image);
}

} // namespace kestrova
