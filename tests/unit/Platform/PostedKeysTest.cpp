#include "Platform/Linux/Keys/PostedKeys.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class PostedKeysTest : public testing::Test
{
protected:
    bool take(const PostedKeys::Event &event, quint32 time = 1000)
    {
        return m_keys.take(PostedKeys::ofAllWindows, event, time);
    }

    static PostedKeys::Event press(quint8 keyCode) { return {true, keyCode}; }
    static PostedKeys::Event release(quint8 keyCode) { return {false, keyCode}; }

    PostedKeys m_keys;
};

TEST_F(PostedKeysTest, EachAnnouncedEventIsTakenOnceAndInOrder)
{
    m_keys.announce({press(50), press(118), release(118)});
    EXPECT_FALSE(take(press(118)));
    EXPECT_TRUE(take(press(50)));
    EXPECT_FALSE(take(press(50)));
    EXPECT_FALSE(take(release(118)));
    EXPECT_TRUE(take(press(118)));
    EXPECT_FALSE(take(press(118)));
    EXPECT_TRUE(take(release(118)));
    EXPECT_FALSE(take(release(118)));
}

TEST_F(PostedKeysTest, ThePreparationIsDoneWhenAskedForWhileThereIsOne)
{
    int preparations = 0;
    m_keys.setPreparation([&] { ++preparations; });
    m_keys.announce({press(50)});
    EXPECT_EQ(preparations, 0);
    m_keys.prepare();
    EXPECT_EQ(preparations, 1);
    m_keys.setPreparation(nullptr);
    m_keys.prepare();
    EXPECT_EQ(preparations, 1);
}

TEST_F(PostedKeysTest, AKeyOfTheUserInBetweenIsNotOurs)
{
    m_keys.announce({press(50), press(118)});
    EXPECT_TRUE(take(press(50)));
    EXPECT_FALSE(take(press(38)));
    EXPECT_TRUE(take(press(118)));
}

TEST_F(PostedKeysTest, EventsThatNobodyObservedAreForgottenAtTheNextChord)
{
    m_keys.announce({press(50), press(118)});
    m_keys.announce({press(37), press(55)});
    EXPECT_FALSE(take(press(50)));
    EXPECT_TRUE(take(press(37)));
}

TEST_F(PostedKeysTest, EveryObserverTakesEachEvent)
{
    m_keys.announce({press(50)});
    EXPECT_TRUE(m_keys.take(PostedKeys::ofOwnWindows, press(50), 1000));
    EXPECT_FALSE(m_keys.take(PostedKeys::ofOwnWindows, press(50), 1000));
    EXPECT_TRUE(m_keys.take(PostedKeys::ofAllWindows, press(50), 1000));
}

TEST_F(PostedKeysTest, EventsAfterTheChordAreTheUsers)
{
    m_keys.announce({press(50), press(118)});
    m_keys.finish(1000);
    EXPECT_FALSE(take(press(50), 1001));
    EXPECT_TRUE(take(press(50), 1000)); // observed late
    m_keys.announce({press(50), press(118)});
    EXPECT_TRUE(take(press(50), 2000));
}

TEST_F(PostedKeysTest, TheServersClockMayStartAnew)
{
    m_keys.announce({press(50), press(118)});
    m_keys.finish(2);
    EXPECT_TRUE(take(press(50), 0xFFFFFFFF));
    EXPECT_FALSE(take(press(118), 3));
}

} // namespace
} // namespace kestrova
