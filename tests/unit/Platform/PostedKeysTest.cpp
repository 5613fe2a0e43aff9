#include "Platform/Linux/X11/PostedKeys.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(PostedKeys, EachAnnouncedPressIsTakenOnceAndInOrder)
{
    PostedKeys keys;
    keys.announce({50, 118});
    EXPECT_FALSE(keys.take(118));
    EXPECT_TRUE(keys.take(50));
    EXPECT_FALSE(keys.take(50));
    EXPECT_TRUE(keys.take(118));
    EXPECT_FALSE(keys.take(118));
}

TEST(PostedKeys, AKeyOfTheUserInBetweenIsNotOurs)
{
    PostedKeys keys;
    keys.announce({50, 118});
    EXPECT_TRUE(keys.take(50));
    EXPECT_FALSE(keys.take(38));
    EXPECT_TRUE(keys.take(118));
}

TEST(PostedKeys, PressesThatNobodyObservedAreForgottenAtTheNextChord)
{
    PostedKeys keys;
    keys.announce({50, 118});
    keys.announce({37, 55});
    EXPECT_FALSE(keys.take(50));
    EXPECT_TRUE(keys.take(37));
}

} // namespace
} // namespace kestrova
