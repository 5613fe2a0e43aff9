#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

class AppControllerRoutingTest : public ControllerTest
{
protected:
    /// Where the transcript of the dictation under way goes.
    std::optional<TargetApplication> targetOfDictation()
    {
        toggle();
        return inserter->insertions.back().target;
    }
};

TEST_F(AppControllerRoutingTest, TheMainShortcutDictatesIntoTheApplicationInFront)
{
    toggle();
    EXPECT_EQ(targetOfDictation(), targetInFront(editor));
}

TEST_F(AppControllerRoutingTest, WithOurOwnWindowInFrontItIsTheApplicationBefore)
{
    fake.desktop->bringToFront(browser.processIdentifier);
    fake.desktop->bringToFront(ownProgram.processIdentifier);
    toggle();
    EXPECT_EQ(targetOfDictation(), targetInFront(browser));
}

TEST_F(AppControllerRoutingTest, WithNoOtherApplicationTheDestinationIsLeftOpen)
{
    fake.desktop->bringToFront(ownProgram.processIdentifier);
    launch();
    toggle();
    EXPECT_FALSE(targetOfDictation());
    EXPECT_EQ(state().usageSnapshot.get().topApplications.value(0).appName, u"Unknown"_s);
}

TEST_F(AppControllerRoutingTest, TheDestinationIsChosenAtThePress)
{
    controller->toggleRecordingWithDefaultTarget();
    fake.desktop->bringToFront(browser.processIdentifier);
    settle();
    EXPECT_EQ(targetOfDictation(), targetInFront(editor));
}

TEST_F(AppControllerRoutingTest, ASlotDictatesIntoItsApplicationWhereverTheUserIs)
{
    assign(3, browser.bundleIdentifier, u"Web"_s);
    toggleSlot(3);
    EXPECT_EQ(targetOfDictation(), targetOfSlot(browser, u"Web"_s));
}

TEST_F(AppControllerRoutingTest, ASlotWhoseApplicationIsNotRunningStillStarts)
{
    assign(3, u"org.example.Absent"_s, u"Absent"_s);
    toggleSlot(3);
    EXPECT_EQ(targetOfDictation(), (TargetApplication{0, u"org.example.Absent"_s, u"Absent"_s}));
}

TEST_F(AppControllerRoutingTest, AnUnassignedSlotSaysSoAndStartsNothing)
{
    toggleSlot(4);
    EXPECT_EQ(shownError(),
              u"Hotbar slot 4 is unassigned. Assign an app in Dashboard > Hotbar Apps."_s);
    EXPECT_EQ(changes(), QStringList({u"lastError"_s, u"state error"_s}));
    EXPECT_EQ(capture->starts, 0);
}

TEST_F(AppControllerRoutingTest, ASlotWithAnEmptyIdentifierIsUnassigned)
{
    controller->updateSettings([](AppSettings &settings) {
        settings.hotbarAssignments[8] = {9, u""_s, u"Nobody"_s, {}};
    });
    toggleSlot(9);
    EXPECT_EQ(shownError(),
              u"Hotbar slot 9 is unassigned. Assign an app in Dashboard > Hotbar Apps."_s);
}

} // namespace
} // namespace kestrova
