#include "ViewModels/AppState.h"

#include "ViewModels/StateTrail.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

class AppStateTest : public testing::Test
{
protected:
    AppState state{AppSettings::defaults()};
};

TEST_F(AppStateTest, AFreshStateHasExaminedNothing)
{
    EXPECT_EQ(state.state.get(), DictationState::idle());
    EXPECT_EQ(state.sessionWordCount.get(), 0);
    EXPECT_EQ(state.lastTranscript.get(), u""_s);
    EXPECT_EQ(state.lastDelivery.get().outcome, DeliveryOutcome::requested);
    EXPECT_FALSE(state.lastError.get());
    EXPECT_FALSE(state.isModelReady.get());
    EXPECT_FALSE(state.isPreparingModel.get());
    EXPECT_FALSE(state.modelDownload.get());
    EXPECT_FALSE(state.isWhisperCLIReady.get());
    EXPECT_EQ(state.resolvedWhisperCLIPath.get(), u""_s);
    EXPECT_EQ(state.permissions.get(),
              (PermissionSnapshot{false, MicrophoneAuthorizationState::unknown, false}));
    EXPECT_EQ(state.usageSnapshot.get(), UsageDashboardSnapshot::empty());
    EXPECT_EQ(state.usageTrendPeriod.get(), UsageTrendPeriod::daily);
    EXPECT_TRUE(state.usageTrendBuckets.get().isEmpty());
}

TEST_F(AppStateTest, ItStartsWithTheGivenSettings)
{
    AppSettings settings = AppSettings::defaults();
    settings.theme = AppTheme::dark;
    EXPECT_EQ(AppState(settings).settings.get(), settings);
}

TEST_F(AppStateTest, ClearingAnErrorLeavesTheErrorState)
{
    state.lastError.set(u"x"_s);
    state.state.set(DictationState::error(u"x"_s));
    state.clearErrorIfNeeded();
    EXPECT_EQ(state.state.get(), DictationState::idle());
    EXPECT_FALSE(state.lastError.get());
}

TEST_F(AppStateTest, ClearingAnErrorLeavesEveryOtherStateAsItIs)
{
    for (const DictationState &running :
         {DictationState::idle(), DictationState::recording(), DictationState::processing()}) {
        state.lastError.set(u"x"_s);
        state.state.set(running);
        state.clearErrorIfNeeded();
        EXPECT_EQ(state.state.get(), running);
        EXPECT_FALSE(state.lastError.get());
    }
}

TEST_F(AppStateTest, TheStateChangesBeforeTheErrorIsForgotten)
{
    state.lastError.set(u"x"_s);
    state.state.set(DictationState::error(u"x"_s));
    StateTrail trail(state);
    state.clearErrorIfNeeded();
    EXPECT_EQ(trail.take(), QStringList({u"state idle"_s, u"no lastError"_s}));
    state.clearErrorIfNeeded();
    EXPECT_EQ(trail.take(), QStringList());
}

// What a member is set to, and how it is reached.
template <typename T>
struct MemberCase
{
    AppState::Published<T> AppState::*member;
    void (AppState::*changed)();
    T value;
};

template <typename T>
void expectAnnounced(AppState &state, const MemberCase<T> &tested)
{
    auto &member = state.*tested.member;
    const T before = member.get();
    ASSERT_FALSE(before == tested.value) << "the case sets nothing";
    QStringList calls;
    QObject context;
    QObject::connect(&state, &AppState::willChange, &context, [&] {
        calls.append(member.get() == before ? u"will change"_s : u"too late"_s);
    });
    QObject::connect(&state, tested.changed, &context, [&] {
        calls.append(member.get() == tested.value ? u"changed"_s : u"too early"_s);
    });

    member.set(tested.value);
    EXPECT_EQ(calls, QStringList({u"will change"_s, u"changed"_s}));
    member.set(tested.value);
    EXPECT_EQ(calls.size(), 2) << "an equal value is no change";
}

TEST_F(AppStateTest, WhatIsNewsIsAnnouncedAlsoWhenItIsTheSame)
{
    StateTrail trail(state);
    for (int i = 0; i < 2; ++i)
        state.lastError.announce(u"x"_s);
    EXPECT_EQ(trail.take(), (QStringList{u"lastError"_s, u"lastError"_s}));
    state.lastError.set(u"x"_s);
    EXPECT_EQ(trail.take(), QStringList());
}

TEST_F(AppStateTest, EveryMemberIsAnnouncedBeforeItsChangeAndAfterIt)
{
    expectAnnounced<DictationState>(
        state, {&AppState::state, &AppState::stateChanged, DictationState::error(u"x"_s)});
    expectAnnounced<DictationState>(
        state, {&AppState::state, &AppState::stateChanged, DictationState::error(u"y"_s)});
    expectAnnounced<qint64>(state,
                            {&AppState::sessionWordCount, &AppState::sessionWordCountChanged, 1});
    expectAnnounced<QString>(state,
                             {&AppState::lastTranscript, &AppState::lastTranscriptChanged, u"a"_s});
    expectAnnounced<Delivery>(state, {&AppState::lastDelivery, &AppState::lastDeliveryChanged, {}});
    expectAnnounced<QList<UnconfirmedTranscript>>(state, {&AppState::unconfirmedTranscripts,
                                                          &AppState::unconfirmedTranscriptsChanged,
                                                          {UnconfirmedTranscript{}}});
    expectAnnounced<std::optional<QString>>(
        state, {&AppState::lastError, &AppState::lastErrorChanged, u""_s});
    expectAnnounced<bool>(state, {&AppState::isModelReady, &AppState::isModelReadyChanged, true});
    expectAnnounced<bool>(state,
                          {&AppState::isPreparingModel, &AppState::isPreparingModelChanged, true});
    expectAnnounced<std::optional<DownloadProgress>>(
        state, {&AppState::modelDownload, &AppState::modelDownloadChanged, DownloadProgress{}});
    expectAnnounced<bool>(
        state, {&AppState::isWhisperCLIReady, &AppState::isWhisperCLIReadyChanged, true});
    expectAnnounced<QString>(state, {&AppState::resolvedWhisperCLIPath,
                                     &AppState::resolvedWhisperCLIPathChanged, u"/w"_s});
    expectAnnounced<PermissionSnapshot>(
        state,
        {&AppState::permissions, &AppState::permissionsChanged, {.accessibilityAuthorized = true}});
    AppSettings settings = AppSettings::defaults();
    settings.hotbarAssignments[8].appName = u"a"_s;
    expectAnnounced<AppSettings>(state,
                                 {&AppState::settings, &AppState::settingsChanged, settings});
    UsageDashboardSnapshot snapshot = UsageDashboardSnapshot::empty();
    snapshot.slotUsage[0].recordings = 1;
    expectAnnounced<UsageDashboardSnapshot>(
        state, {&AppState::usageSnapshot, &AppState::usageSnapshotChanged, snapshot});
    expectAnnounced<UsageTrendPeriod>(state, {&AppState::usageTrendPeriod,
                                              &AppState::usageTrendPeriodChanged,
                                              UsageTrendPeriod::weekly});
    expectAnnounced<QList<UsageBucket>>(
        state,
        {&AppState::usageTrendBuckets, &AppState::usageTrendBucketsChanged, {UsageBucket{}}});
}

} // namespace
} // namespace kestrova
