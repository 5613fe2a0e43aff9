#include "Platform/Observation/Observers.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

namespace kestrova {
namespace {

using Handler = std::function<void(const std::string &)>;

class ObserversTest : public testing::Test
{
protected:
    Handler noting(const std::string &name)
    {
        return [this, name](const std::string &news) { told += name + ':' + news + ' '; };
    }
    void tell(const std::string &news)
    {
        observers->forEach([&](const Handler &handler) { handler(news); });
    }

    std::unique_ptr<Observers<Handler>> observers = std::make_unique<Observers<Handler>>();
    std::string told;
};

TEST_F(ObserversTest, EachIsToldInOrderUntilItsObservationEnds)
{
    auto first = observers->add(noting("first"));
    const auto second = observers->add(noting("second"));
    tell("a");
    first.reset();
    tell("b");
    EXPECT_EQ(told, "first:a second:a second:b ");
    EXPECT_EQ(observers->count(), 1U);
}

TEST_F(ObserversTest, OneMayKeepTheNewsFromTheLaterOnes)
{
    const auto first = observers->add(noting("first"));
    const auto second = observers->add(noting("second"));
    const auto tellFirst = [&](bool isEnough) {
        return observers->anyOf([&, isEnough](const Handler &handler) {
            handler("a");
            return isEnough;
        });
    };
    EXPECT_TRUE(tellFirst(true));
    EXPECT_EQ(told, "first:a ");
    EXPECT_FALSE(tellFirst(false));
}

TEST_F(ObserversTest, WhoeverIsToldMayEndItselfAndLaterOnes)
{
    std::unique_ptr<Observation> self;
    std::unique_ptr<Observation> later;
    self = observers->add([&](const std::string &) {
        self.reset();
        later.reset();
        told += "still here ";
    });
    later = observers->add(noting("later"));
    tell("a");
    tell("b");
    EXPECT_EQ(told, "still here ");
    EXPECT_EQ(observers->count(), 0U);
}

TEST_F(ObserversTest, WhoeverIsToldMayAddOthersWhichAreToldNextTime)
{
    std::vector<std::unique_ptr<Observation>> added;
    const auto adding = observers->add([&](const std::string &) {
        for (int i = 0; i < 100; ++i)
            added.push_back(observers->add(noting("added")));
    });
    tell("a");
    EXPECT_EQ(told, "");
    EXPECT_EQ(observers->count(), 101U);
}

TEST_F(ObserversTest, WhoeverIsToldMayDestroyTheListAndTheOthersAreStillTold)
{
    const auto destroying = observers->add([&](const std::string &) { observers.reset(); });
    const auto other = observers->add(noting("other"));
    tell("a");
    EXPECT_EQ(told, "other:a ");
}

TEST_F(ObserversTest, TheNewsMayBeToldWithinTheNews)
{
    const auto nested = observers->add([&](const std::string &news) {
        if (news == "a")
            tell("b");
    });
    const auto noted = observers->add(noting("noted"));
    tell("a");
    EXPECT_EQ(told, "noted:b noted:a ");
}

TEST_F(ObserversTest, AnObservationMayOutliveTheListAndAnObserverNeverItsObservation)
{
    const auto owned = std::make_shared<int>();
    auto observation = observers->add([owned](const std::string &) {});
    observers.reset();
    EXPECT_EQ(owned.use_count(), 2);
    observation.reset();
    EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(ObserversTest, ACopyHasTheSameObservers)
{
    auto first = observers->add(noting("first"));
    const Observers<Handler> copy = *observers;
    const auto second = observers->add(noting("second"));
    copy.forEach([](const Handler &handler) { handler("a"); });
    first.reset();
    copy.forEach([](const Handler &handler) { handler("b"); });
    EXPECT_EQ(told, "first:a ");
}

TEST_F(ObserversTest, AnObservationMayEndOnAnotherThreadMeanwhile)
{
    for (int i = 0; i < 200; ++i) {
        auto ending = observers->add([](const std::string &) {});
        std::thread other([&ending] { ending.reset(); });
        tell("a");
        other.join();
        EXPECT_EQ(observers->count(), 0U);
    }
}

} // namespace
} // namespace kestrova
