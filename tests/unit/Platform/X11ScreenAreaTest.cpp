#include "Platform/Linux/X11/Windows/X11Windowing.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

const QRect whole(0, 0, 1920, 1080);

TEST(X11ScreenArea, APanelIsLeftOut)
{
    const ScreenArea screen{whole, whole};
    EXPECT_EQ(withoutPanel(screen, {0, 0, 1920, 32}).available, whole.adjusted(0, 32, 0, 0));
    EXPECT_EQ(withoutPanel(screen, {600, 1048, 700, 32}).available, whole.adjusted(0, 0, 0, -32));
    EXPECT_EQ(withoutPanel(screen, {0, 100, 40, 700}).available, whole.adjusted(40, 0, 0, 0));
    EXPECT_EQ(withoutPanel(screen, {1880, 0, 40, 1080}).available, whole.adjusted(0, 0, -40, 0));
}

TEST(X11ScreenArea, APanelThatIsLeftOutAlreadyChangesNothing)
{
    const ScreenArea screen{whole, whole.adjusted(0, 32, 0, 0)};
    EXPECT_EQ(withoutPanel(screen, {0, 0, 1920, 24}).available, screen.available);
}

TEST(X11ScreenArea, AnotherScreensPanelChangesNothing)
{
    const ScreenArea screen{whole, whole};
    EXPECT_EQ(withoutPanel(screen, {1920, 0, 1920, 32}).available, whole);
    EXPECT_EQ(withoutPanel(screen, QRect()).available, whole);
}

} // namespace
} // namespace kestrova
