#include "Views/Tray/MenuBarIcon.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

const QColor dark(0x1F, 0x1C, 0x1A);
const QColor light(0xF4, 0xF1, 0xED);

QImage drawn(const MenuBarIconColors &colors, int size, const QColor &panel = Qt::transparent)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(panel);
    QPainter painter(&image);
    menuBarIcon(colors).paint(&painter, image.rect());
    return image;
}

int coverage(const QImage &image, int x, int y)
{
    return qAlpha(image.pixel(x, y));
}

TEST(MenuBarIconColors, ATraysOwnTextColourComesFirst)
{
    EXPECT_EQ(MenuBarIconColors::on(QColor(Qt::green), QColor(Qt::white)),
              (MenuBarIconColors{Qt::green, {}}));
}

TEST(MenuBarIconColors, ElseTheyContrastWithThePanel)
{
    EXPECT_EQ(MenuBarIconColors::on({}, QColor(Qt::black)), (MenuBarIconColors{light, {}}));
    EXPECT_EQ(MenuBarIconColors::on({}, QColor(Qt::white)), (MenuBarIconColors{dark, {}}));
    EXPECT_EQ(MenuBarIconColors::on({}, QColor(0x20, 0x24, 0x28)), (MenuBarIconColors{light, {}}));
    EXPECT_EQ(MenuBarIconColors::on({}, QColor(Qt::yellow)), (MenuBarIconColors{dark, {}}));
    EXPECT_EQ(MenuBarIconColors::on({}, QColor(Qt::blue)), (MenuBarIconColors{light, {}}));
}

TEST(MenuBarIconColors, OnAnUnknownPanelTheyHaveAnOutline)
{
    EXPECT_EQ(MenuBarIconColors::on({}, {}), (MenuBarIconColors{light, dark}));
}

TEST(MenuBarIcon, ItIsFourLinesOfTheirOwnHeights)
{
    // Ten pixels to one of the square, in which the image is at 2, 4.
    const QImage image = drawn({Qt::black, {}}, 220);
    const double tops[] = {3.3, 1.0, 2.6, 4.8};
    for (int line = 0; line < 4; ++line) {
        const int x = int((2 + 2.5 + 4 * line) * 10);
        const int top = int((4 + tops[line] - 1.1) * 10); // the cap is half a width higher
        EXPECT_EQ(coverage(image, x, top + 2), 255) << line;
        EXPECT_EQ(coverage(image, x, top - 2), 0) << line;
        EXPECT_EQ(coverage(image, x, 219 - (top + 2)), 255) << line;
        EXPECT_EQ(coverage(image, x, 219 - (top - 2)), 0) << line;
        EXPECT_EQ(coverage(image, x - 10, 110), 255) << line;
        EXPECT_EQ(coverage(image, x - 13, 110), 0) << line;
        EXPECT_EQ(coverage(image, x + 10, 110), 255) << line;
        EXPECT_EQ(coverage(image, x + 13, 110), 0) << line;
    }
}

TEST(MenuBarIcon, ItIsCentredInASquareOfAnySize)
{
    for (const int size : {16, 22, 24, 44, 48}) {
        const QImage image = drawn({Qt::black, {}}, size);
        for (int y = 0; y < size; ++y)
            EXPECT_NEAR(coverage(image, size * 17 / 44, y),
                        coverage(image, size * 17 / 44, size - 1 - y), 3)
                << size;
        EXPECT_GT(coverage(image, size * 17 / 44, size / 2), 200) << size;
        EXPECT_EQ(coverage(image, 0, size / 2), 0) << size;
        EXPECT_EQ(coverage(image, size - 1, size / 2), 0) << size;
    }
}

TEST(MenuBarIcon, InAnOblongPlaceItKeepsItsProportions)
{
    QImage wide(44, 22, QImage::Format_ARGB32_Premultiplied);
    wide.fill(Qt::transparent);
    QPainter painter(&wide);
    menuBarIcon({Qt::black, {}}).paint(&painter, wide.rect());
    painter.end();
    EXPECT_EQ(wide.copy(11, 0, 22, 22), drawn({Qt::black, {}}, 22));
}

TEST(MenuBarIcon, TheUnknownPanelsIconCanBeMadeOutOnBlackAndOnWhite)
{
    const MenuBarIconColors colors = MenuBarIconColors::on({}, {});
    for (const QColor panel : {QColor(Qt::black), QColor(Qt::white)}) {
        const QImage image = drawn(colors, 220, panel);
        bool isSeen = false;
        for (int x = 0; x < image.width(); ++x)
            isSeen |= std::abs(qGray(image.pixel(x, 110)) - qGray(panel.rgb())) > 200;
        EXPECT_TRUE(isSeen) << panel.name().toStdString();
    }
}

TEST(MenuBarIcon, APanelIsSentTheUsualSizes)
{
    int argc = 3;
    char *argv[] = {const_cast<char *>("test"), const_cast<char *>("-platform"),
                    const_cast<char *>("offscreen"), nullptr};
    const QGuiApplication application(argc, argv); // pixmaps need one
    const QIcon icon = menuBarIcon({Qt::black, {}});
    for (const int size : {22, 24, 44, 48}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size)));
        EXPECT_EQ(icon.pixmap(size).size(), QSize(size, size));
    }
}

} // namespace
} // namespace kestrova
