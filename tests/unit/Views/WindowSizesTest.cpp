#include "Views/Scenes/WindowSizes.h"

#include "Platform/Fake/FakePlatform.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

class WindowSizesTest : public testing::Test
{
protected:
    UserDefaults &defaults() { return *fake.platform.userDefaults; }
    void store(const QByteArray &document)
    {
        defaults().setData(u"kestrova.windows.v1"_s, document);
    }

    FakePlatform fake;
};

TEST_F(WindowSizesTest, AWindowThatWasNeverLeftHasNone)
{
    EXPECT_EQ(WindowSizes(defaults()).size(u"settings"_s), std::nullopt);
}

TEST_F(WindowSizesTest, EachWindowsSizeIsKept)
{
    WindowSizes sizes(defaults());
    sizes.setSize(u"settings"_s, {800, 620});
    sizes.setSize(u"dashboard"_s, {1080, 680});
    sizes.setSize(u"settings"_s, {900, 700});

    const WindowSizes reread(defaults());
    EXPECT_EQ(reread.size(u"settings"_s), QSize(900, 700));
    EXPECT_EQ(reread.size(u"dashboard"_s), QSize(1080, 680));
}

TEST_F(WindowSizesTest, WhatIsNoSizeIsIgnored)
{
    for (const char *document :
         {"", "[]", "{", R"({"settings":5})", R"({"settings":[800]})", R"({"settings":[0,620]})",
          R"({"settings":[-1,-1]})", R"({"settings":["a","b"]})"}) {
        store(document);
        EXPECT_EQ(WindowSizes(defaults()).size(u"settings"_s), std::nullopt) << document;
    }
}

} // namespace
} // namespace kestrova
