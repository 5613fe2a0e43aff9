#include "Platform/Linux/X11/PostedKeys.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class PostedKeysTest : public testing::Test
{
protected:
    bool take(quint8 keyCode, quint32 time = 1000)
    {
        return m_keys.take(PostedKeys::ofAllWindows, keyCode, time);
    }

    PostedKeys m_keys;
};

TEST_F(PostedKeysTest, EachAnnouncedPressIsTakenOnceAndInOrder)
{
    m_keys.announce({50, 118});
    EXPECT_FALSE(take(118));
    EXPECT_TRUE(take(50));
    EXPECT_FALSE(take(50));
    EXPECT_TRUE(take(118));
    EXPECT_FALSE(take(118));
}

TEST_F(PostedKeysTest, AKeyOfTheUserInBetweenIsNotOurs)
{
    m_keys.announce({50, 118});
    EXPECT_TRUE(take(50));
    EXPECT_FALSE(take(38));
    EXPECT_TRUE(take(118));
}

TEST_F(PostedKeysTest, PressesThatNobodyObservedAreForgottenAtTheNextChord)
{
    m_keys.announce({50, 118});
    m_keys.announce({37, 55});
    EXPECT_FALSE(take(50));
    EXPECT_TRUE(take(37));
}

TEST_F(PostedKeysTest, EveryObserverTakesEachPress)
{
    m_keys.announce({50});
    EXPECT_TRUE(m_keys.take(PostedKeys::ofOwnWindows, 50, 1000));
    EXPECT_FALSE(m_keys.take(PostedKeys::ofOwnWindows, 50, 1000));
    EXPECT_TRUE(m_keys.take(PostedKeys::ofAllWindows, 50, 1000));
}

TEST_F(PostedKeysTest, PressesAfterTheChordAreTheUsers)
{
    m_keys.announce({50, 118});
    m_keys.finish(1000);
    EXPECT_FALSE(take(50, 1001));
    EXPECT_TRUE(take(50, 1000)); // observed late
    m_keys.announce({50, 118});
    EXPECT_TRUE(take(50, 2000));
}

TEST_F(PostedKeysTest, TheServersClockMayStartAnew)
{
    m_keys.announce({50, 118});
    m_keys.finish(2);
    EXPECT_TRUE(take(50, 0xFFFFFFFF));
    EXPECT_FALSE(take(118, 3));
}

} // namespace
} // namespace kestrova
