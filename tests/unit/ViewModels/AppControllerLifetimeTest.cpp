#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

/// The end of the controller with work still queued, which then finds it gone.
using AppControllerLifetimeTest = ControllerTest;

TEST_F(AppControllerLifetimeTest, NothingListensAfterTheEnd)
{
    end();
    EXPECT_EQ(fake.keyboard.globalMonitorCount(), 0);
    EXPECT_EQ(fake.keyboard.localMonitorCount(), 0);
    fake.desktop->bringToFront(browser.processIdentifier);
    EXPECT_TRUE(main.isIdle());
}

TEST_F(AppControllerLifetimeTest, AShortcutPressedBeforeTheEndStartsNothing)
{
    press(HotkeyShortcut::defaultMain());
    press(HotkeyShortcut::defaultHotbarNumber(1).value());
    end();
    settle();
    EXPECT_EQ(capture->starts, 0);
}

TEST_F(AppControllerLifetimeTest, ACommandGivenBeforeTheEndStartsNothing)
{
    controller->toggleRecordingWithDefaultTarget();
    end();
    settle();
    EXPECT_EQ(capture->starts, 0);
}

TEST_F(AppControllerLifetimeTest, AProcessingIsAbandoned)
{
    toggleIntoProcessing();
    end();
    settle();
    EXPECT_TRUE(inserter->insertions.empty());
    EXPECT_TRUE(fake.processes.calls().isEmpty());
    EXPECT_FALSE(fake.userDefaults.stored(UsageAnalyticsService::standardKey()));
}

TEST_F(AppControllerLifetimeTest, EventsOnTheirWayAreDropped)
{
    toggleIntoProcessing();
    background.runAll();
    EXPECT_EQ(inserter->insertions.size(), 1U);
    ASSERT_FALSE(main.isIdle());
    end();
    settle();
    EXPECT_FALSE(fake.userDefaults.stored(UsageAnalyticsService::standardKey()));
}

TEST_F(AppControllerLifetimeTest, AnAnswerAboutTheMicrophoneMayComeAfterwards)
{
    fake.access.setMicrophoneState(MicrophoneAuthorizationState::notDetermined);
    controller->requestMicrophoneAccess();
    settle();
    ASSERT_EQ(fake.access.microphoneRequestCount(), 1);
    controller->requestMicrophoneAccess();
    end();
    const int readings = environmentReadings;
    settle();
    fake.access.answerMicrophoneRequests(false);
    EXPECT_EQ(fake.access.microphoneRequestCount(), 1) << "the second request was never made";
    EXPECT_EQ(environmentReadings, readings);
}

TEST_F(AppControllerLifetimeTest, ADownloadIsAbandoned)
{
    removeModel();
    controller->prepareModel(false);
    end();
    background.runAll();
    EXPECT_TRUE(main.isIdle()) << "being abandoned is no failure";
    EXPECT_FALSE(QFile::exists(modelPath()));
}

TEST_F(AppControllerLifetimeTest, AFailureOfAPreparationMayComeAfterwards)
{
    controller->updateSettings([](AppSettings &settings) { settings.modelDownloadURL.clear(); });
    controller->prepareModel(false);
    background.runAll();
    ASSERT_FALSE(main.isIdle());
    end();
    settle();
}

TEST_F(AppControllerLifetimeTest, EverythingIsReleasedOnceTheQueuesAreEmpty)
{
    const std::weak_ptr<SubstituteInserter> released = inserter;
    toggleIntoProcessing();
    end();
    settle();
    EXPECT_EQ(released.use_count(), 1) << "only this test still holds it";
}

} // namespace
} // namespace kestrova
