#include "Views/Tray/MenuBarIcon.h"

#include <QIconEngine>
#include <QPainter>

#include <array>
#include <cmath>

namespace kestrova {

namespace {

constexpr QColor nearBlack(0x1F, 0x1C, 0x1A);
constexpr QColor nearWhite(0xF4, 0xF1, 0xED);

// The image is 18 x 14 in a square of 22.
constexpr QSizeF imageSize(18, 14);
constexpr qreal squareSize = 22;
constexpr qreal lineWidth = 2.2;
constexpr qreal outlineWidth = 0.8; // beyond each side of a line
constexpr std::array lines{
    QLineF(2.5, 3.3, 2.5, 10.7),
    QLineF(6.5, 1.0, 6.5, 13.0),
    QLineF(10.5, 2.6, 10.5, 11.4),
    QLineF(14.5, 4.8, 14.5, 9.2),
};

/// As WCAG defines it, 0 to 1.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

void drawLines(QPainter &painter, const QColor &color, qreal width)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawLines(lines.data(), int(lines.size()));
}

class MenuBarIconEngine final : public QIconEngine
{
public:
    explicit MenuBarIconEngine(const MenuBarIconColors &colors) : m_colors(colors) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center());
        const qreal scale = std::min(rect.width(), rect.height()) / squareSize;
        painter->scale(scale, scale);
        painter->translate(-imageSize.width() / 2, -imageSize.height() / 2);
        if (m_colors.outline.isValid())
            drawLines(*painter, m_colors.outline, lineWidth + 2 * outlineWidth);
        drawLines(*painter, m_colors.line, lineWidth);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    /// What a panel that takes pictures is sent.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {44, 44}, {48, 48}, {64, 64}};
    }

    QIconEngine *clone() const override { return new MenuBarIconEngine(*this); }

private:
    const MenuBarIconColors m_colors;
};

} // namespace

MenuBarIconColors MenuBarIconColors::on(const std::optional<QColor> &trayText,
                                        const std::optional<QColor> &panel)
{
    if (trayText)
        return {*trayText, {}};
    if (!panel)
        return {nearWhite, nearBlack};
    const bool isDark = contrast(nearWhite, *panel) > contrast(nearBlack, *panel);
    return {isDark ? nearWhite : nearBlack, {}};
}

QIcon menuBarIcon(const MenuBarIconColors &colors)
{
    return QIcon(new MenuBarIconEngine(colors));
}

} // namespace kestrova
