#include "Views/Primitives/Surfaces/Shadow.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

constexpr int margin = 60;
constexpr int width = 400;
constexpr int height = 300;

class ShadowTest : public testing::Test
{
protected:
    ShadowTest()
    {
        shadow.setSize(QSizeF(width, height));
        shadow.setProperty("margin", margin);
        shadow.setProperty("blur", 40);
        shadow.setProperty("drop", 10);
        shadow.setProperty("color", QColor(0, 0, 0, 100));
    }

    QImage drawn()
    {
        QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        shadow.paint(&painter);
        return image;
    }

    Shadow shadow;
};

TEST_F(ShadowTest, ItIsFullInTheMiddleHalfAtTheEdgesAndNothingFarOff)
{
    const QImage image = drawn();
    EXPECT_EQ(qAlpha(image.pixel(width / 2, height / 2)), 100);
    EXPECT_NEAR(qAlpha(image.pixel(margin, height / 2)), 50, 2);
    EXPECT_NEAR(qAlpha(image.pixel(width / 2, height - margin + 10)), 50, 2);
    EXPECT_NEAR(qAlpha(image.pixel(margin, height - margin + 10)), 25, 2);
    EXPECT_EQ(qAlpha(image.pixel(0, height / 2)), 0);
}

TEST_F(ShadowTest, ItLiesLowerThanTheBox)
{
    const QImage image = drawn();
    EXPECT_EQ(image.copy(0, 0, width / 2, height),
              image.mirrored(true, false).copy(0, 0, width / 2, height));
    EXPECT_EQ(image.copy(0, 20, width, 100).mirrored(false, true),
              image.copy(0, height - 100, width, 100));
}

TEST_F(ShadowTest, ItHasItsColour)
{
    shadow.setProperty("color", QColor(255, 0, 0, 255));
    EXPECT_EQ(drawn().pixelColor(width / 2, height / 2), QColor(255, 0, 0));
}

} // namespace
} // namespace kestrova
