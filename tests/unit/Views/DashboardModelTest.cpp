#include "Views/Dashboard/DashboardModel.h"

#include "Services/Usage/UsageLog.h"
#include "ViewModels/ControllerTest.h"
#include "support/UsageEvents.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::SizeIs;

class DashboardModelTest : public ControllerTest
{
protected:
    DashboardModel &open()
    {
        model = std::make_unique<DashboardModel>(
            *controller, RecorderKeyboard{*fake.platform.keyMonitoring, *fake.platform.windowing});
        return *model;
    }
    void record(const QList<UsageEvent> &events)
    {
        fake.userDefaults.put(UsageAnalyticsService::standardKey(), UsageLog(events).json());
        launch();
    }
    static UsageEvent inSlot(UsageEvent event, int slotIndex)
    {
        event.slotIndex = slotIndex;
        return event;
    }
    UsageEvent intoApplication(const QString &name, qint64 words = 1) const
    {
        UsageEvent event = eventAt(date("2024-03-15T11:30:00+01:00"), words);
        event.targetAppName = name;
        return event;
    }

    UsageCard card(int index) const { return model->usageCards().at(index); }
    HotbarSlotRow slot(int slotIndex) const { return model->hotbarSlots().at(slotIndex - 1); }
    static QStringList texts(const QList<UsageRow> &rows)
    {
        QStringList texts;
        for (const UsageRow &row : rows)
            texts.append(u"%1: %2, %3"_s.arg(row.name, row.count).arg(row.share));
        return texts;
    }
    /// Presses a shortcut in the recorder's sheet and saves it.
    void recordAndSave(const HotkeyShortcut &shortcut)
    {
        model->recorder()->capture()->start(nullptr);
        fake.keyboard.pressLocally({.keyCode = shortcut.keyCode, .modifiers = shortcut.modifiers});
        model->recorder()->capture()->save();
    }
    bool areShortcutsArmed() { return !fake.keyboard.grabbed().isEmpty(); }

    std::unique_ptr<DashboardModel> model;
};

TEST_F(DashboardModelTest, ASlotWhoseShortcutTheKeyboardCannotTypeSaysSo)
{
    open();
    EXPECT_EQ(slot(1).shortcutHint, QString());
    QSignalSpy changed(model.get(), &DashboardModel::hotbarSlotsChanged);
    fake.keyboard.setMissingModifiers(HotkeyShortcut::command);
    EXPECT_EQ(changed.size(), 1);
    controller->setHotbarShortcut(2, {3, HotkeyShortcut::control});
    EXPECT_EQ(slot(1).shortcutHint,
              u"⌘⌥1 cannot be typed on this keyboard: it has no Super (⌘) key. Record another "
              "shortcut, or change the keyboard's options."_s);
    EXPECT_EQ(slot(2).shortcutHint, QString());
}

TEST_F(DashboardModelTest, WhereTheDesktopDecidesASlotShowsTheKeysThatItHasThere)
{
    end();
    FakeGlobalShortcuts &shortcuts = fake.useNamedShortcuts();
    launch();
    open();
    EXPECT_FALSE(model->recordsShortcuts());
    EXPECT_TRUE(model->configuresShortcuts());
    EXPECT_EQ(slot(1).shortcutHint, u"The desktop has not confirmed this shortcut yet."_s);
    shortcuts.accept();
    EXPECT_EQ(slot(1).shortcut, u"keys of hotbar-1"_s);
    EXPECT_EQ(slot(1).shortcutHint, QString());
    model->configureShortcuts();
    EXPECT_EQ(shortcuts.configurations(), 1);
    model.reset();
    end();
}

TEST_F(DashboardModelTest, WhereTheFrontIsUnknownNothingIsOfferedThatNeedsIt)
{
    open();
    EXPECT_TRUE(model->canAssign());
    EXPECT_FALSE(model->hotbarExplanation().contains(u"This desktop"_s));
    fake.desktop->tellNothing();
    open();
    EXPECT_FALSE(model->canAssign());
    EXPECT_TRUE(model->hotbarExplanation().contains(u"none can be assigned from there"_s));
}

TEST_F(DashboardModelTest, OpeningReadsTheUsageAnew)
{
    record({eventAt(date("2024-03-15T11:30:00+01:00"), 5)});
    now = date("2024-03-15T12:30:00+01:00");
    open();
    EXPECT_EQ(card(0).words, u"0 words"_s) << "the hour of the start is over";
    EXPECT_EQ(card(1).words, u"5 words"_s);
}

TEST_F(DashboardModelTest, OfAnEndlessErrorTheBeginningIsShownAndAllOfItCopied)
{
    const QString endless(1'000'000, u'x');
    open();
    state().lastError.set(endless);
    EXPECT_EQ(model->lastError(), endless.first(20'000) + u'…');
    model->copyError();
    EXPECT_EQ(fake.pasteboard.string(), endless);
}

TEST_F(DashboardModelTest, TheStatusIsToldAsInThePopover)
{
    open();
    EXPECT_EQ(model->status().text, u"Ready"_s);
    EXPECT_EQ(model->status().tone, StatusPillTone::Neutral);
    const QSignalSpy changes(model.get(), &DashboardModel::statusChanged);
    toggle();
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(model->status().text, u"Recording..."_s);
    EXPECT_EQ(model->status().tone, StatusPillTone::Recording);
    EXPECT_FALSE(model->status().icon.isEmpty());
}

TEST_F(DashboardModelTest, TheCardsTellTheFourRanges)
{
    record({eventAt(date("2024-03-01T10:00:00+01:00"), 1000),
            eventAt(date("2024-03-12T10:00:00+01:00"), 100),
            eventAt(date("2024-03-15T10:00:00+01:00"), 10),
            eventAt(date("2024-03-15T12:00:00+01:00"), 1)});
    now = date("2024-03-15T12:30:00+01:00");
    open();
    ASSERT_THAT(model->usageCards(), SizeIs(4));
    const QStringList titles{u"This Hour"_s, u"Today"_s, u"This Week"_s, u"This Month"_s};
    const QStringList words{u"1 words"_s, u"11 words"_s, u"111 words"_s, u"1111 words"_s};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(card(i).title, titles[i]);
        EXPECT_EQ(card(i).recordings, QString::number(i + 1));
        EXPECT_EQ(card(i).words, words[i]);
    }
    EXPECT_EQ(card(3).minutes, u"2.0 mins"_s);
    EXPECT_EQ(model->averageWords(), u"277.8"_s);
}

TEST_F(DashboardModelTest, WithoutUsageEverythingIsZeroAndTheListsAreEmpty)
{
    open();
    EXPECT_EQ(card(3).recordings, u"0"_s);
    EXPECT_EQ(card(3).minutes, u"0.0 mins"_s);
    EXPECT_EQ(model->averageWords(), u"0.0"_s);
    EXPECT_TRUE(model->topApplications().isEmpty());
    EXPECT_TRUE(model->slotUsage().isEmpty());
    EXPECT_EQ(model->recordings() + model->words() + model->minutes(), u"000.0"_s);
}

TEST_F(DashboardModelTest, ApplicationsAreListedWithBarsScaledToTheFirst)
{
    record({intoApplication(u"Editor"_s), intoApplication(u"Editor"_s),
            intoApplication(u"Terminal"_s)});
    open();
    EXPECT_EQ(texts(model->topApplications()),
              QStringList({u"Editor: 2 rec, 1"_s, u"Terminal: 1 rec, 0.5"_s}));
}

TEST_F(DashboardModelTest, SlotsAreListedOnceTheyHaveAnApplication)
{
    record({inSlot(eventAt(now), 2), inSlot(eventAt(now), 2), inSlot(eventAt(now), 3)});
    open();
    const QSignalSpy changes(model.get(), &DashboardModel::slotUsageChanged);
    EXPECT_TRUE(model->slotUsage().isEmpty());
    assign(2, u"org.example.Editor"_s, u"Editor"_s);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(texts(model->slotUsage()), QStringList({u"Editor: 2, 1"_s}));
}

TEST_F(DashboardModelTest, AFinishedDictationIsCountedAtOnce)
{
    open();
    const QSignalSpy usageChanges(model.get(), &DashboardModel::usageChanged);
    const QSignalSpy chartChanges(model.get(), &DashboardModel::chartChanged);
    toggle();
    toggle();
    EXPECT_EQ(usageChanges.size(), 1);
    EXPECT_EQ(chartChanges.size(), 1);
    EXPECT_EQ(model->recordings(), u"1"_s);
    EXPECT_EQ(model->words(), u"2"_s);
    EXPECT_EQ(model->trendChart().marks.last().words, 2);
}

TEST_F(DashboardModelTest, TheHotbarsExplanationNamesTheDefaultsWhateverTheSettings)
{
    open();
    const QString explanation = u"Use ⌘⇧Space for default routing. Hotbar defaults are ⌘⌥1 through "
                                "⌘⌥9, and custom slot shortcuts override them."_s;
    EXPECT_EQ(model->hotbarExplanation(), explanation);
    controller->setGlobalShortcut({.keyCode = 0, .modifiers = HotkeyShortcut::control});
    EXPECT_EQ(model->hotbarExplanation(), explanation);
}

TEST_F(DashboardModelTest, EachSlotShowsItsApplicationAndShortcut)
{
    assign(2, u"org.example.Editor"_s, u"éditeur"_s);
    assign(3, u"org.example.Browser"_s, std::nullopt);
    controller->setHotbarShortcut(3, {.keyCode = 17, .modifiers = HotkeyShortcut::control});
    open();
    ASSERT_THAT(model->hotbarSlots(), SizeIs(9));
    EXPECT_EQ(slot(1).title, u"Slot 1"_s);
    EXPECT_EQ(slot(1).appName, u"Unassigned"_s);
    EXPECT_EQ(slot(1).initial, u""_s);
    EXPECT_EQ(slot(1).shortcut, u"⌘⌥1"_s);
    EXPECT_FALSE(slot(1).isAssigned);
    EXPECT_EQ(slot(2).appName, u"éditeur"_s);
    EXPECT_EQ(slot(2).initial, u"É"_s);
    EXPECT_TRUE(slot(2).isAssigned);
    EXPECT_EQ(slot(3).appName, u"org.example.Browser"_s);
    EXPECT_EQ(slot(3).shortcut, u"⌃T"_s);
}

TEST_F(DashboardModelTest, TheApplicationInFrontIsAssignedAndClearedAgain)
{
    open();
    const QSignalSpy changes(model.get(), &DashboardModel::hotbarSlotsChanged);
    model->assignFrontmost(4);
    EXPECT_EQ(slot(4).appName, u"Editor"_s);
    EXPECT_EQ(changes.size(), 1);
    model->clear(4);
    EXPECT_FALSE(slot(4).isAssigned);
    EXPECT_EQ(slot(4).appName, u"Unassigned"_s);
    EXPECT_EQ(settingsStore->load(), state().settings.get()) << "the change is kept";
}

TEST_F(DashboardModelTest, ClearingKeepsTheShortcutAndResettingKeepsTheApplication)
{
    open();
    const HotkeyShortcut custom{.keyCode = 17, .modifiers = HotkeyShortcut::control};
    model->assignFrontmost(4);
    controller->setHotbarShortcut(4, custom);
    model->clear(4);
    EXPECT_EQ(slot(4).shortcut, custom.displayText());
    model->assignFrontmost(4);
    model->resetShortcut(4);
    EXPECT_EQ(slot(4).shortcut, u"⌘⌥4"_s);
    EXPECT_EQ(slot(4).appName, u"Editor"_s);
}

TEST_F(DashboardModelTest, ARecordedShortcutBecomesTheSlots)
{
    open();
    const HotkeyShortcut recorded{.keyCode = 17, .modifiers = HotkeyShortcut::control};
    model->recordShortcut(5);
    EXPECT_TRUE(model->recorder()->isOpen());
    EXPECT_FALSE(areShortcutsArmed());
    recordAndSave(recorded);
    EXPECT_FALSE(model->recorder()->isOpen());
    EXPECT_TRUE(areShortcutsArmed());
    EXPECT_EQ(slot(5).shortcut, recorded.displayText());
}

TEST_F(DashboardModelTest, AShortcutThatIsTakenIsRefusedAndAllAreArmedAgain)
{
    open();
    model->recordShortcut(5);
    recordAndSave(HotkeyShortcut::defaultMain());
    EXPECT_EQ(slot(5).shortcut, u"⌘⌥5"_s);
    EXPECT_NE(shownError(), u"none"_s);
    EXPECT_FALSE(model->recorder()->isOpen());
    EXPECT_TRUE(areShortcutsArmed());
}

TEST_F(DashboardModelTest, ACancelledRecordingChangesNothing)
{
    open();
    model->recordShortcut(5);
    model->recorder()->capture()->cancel();
    EXPECT_EQ(slot(5).shortcut, u"⌘⌥5"_s);
    EXPECT_TRUE(areShortcutsArmed());
}

TEST_F(DashboardModelTest, ClosingTheWindowEndsARecording)
{
    open().recordShortcut(5);
    ASSERT_FALSE(areShortcutsArmed());
    model.reset();
    EXPECT_TRUE(areShortcutsArmed());
}

TEST_F(DashboardModelTest, ThePeriodChangesChartAndMetrics)
{
    record({eventAt(date("2024-01-15T11:30:00+01:00"), 7),
            eventAt(date("2024-03-15T11:30:00+01:00"), 5)});
    open();
    EXPECT_EQ(model->period(), 1) << "daily";
    EXPECT_EQ(model->words(), u"5"_s) << "of the last 30 days";
    const QSignalSpy changes(model.get(), &DashboardModel::periodChanged);
    model->setPeriod(3);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(state().usageTrendPeriod.get(), UsageTrendPeriod::monthly);
    EXPECT_EQ(model->words(), u"12"_s);
    EXPECT_EQ(model->minutes(), u"1.0"_s);
    EXPECT_THAT(model->trendChart().marks, SizeIs(12));
}

TEST_F(DashboardModelTest, PickersOfferEveryPeriodAndStyleInOrder)
{
    open();
    EXPECT_EQ(model->periodTitles(),
              QStringList({u"Hourly"_s, u"Daily"_s, u"Weekly"_s, u"Monthly"_s}));
    EXPECT_EQ(model->chartStyleTitles(), QStringList({u"Heatmap"_s, u"Bar"_s, u"Line"_s}));
}

TEST_F(DashboardModelTest, TheHeatmapTakesThePeriodToDailyAndOtherPeriodsTakeItToBars)
{
    open();
    model->setPeriod(2);
    model->setChartStyle(DashboardModel::Heatmap);
    EXPECT_EQ(model->period(), 1);
    EXPECT_EQ(model->chartStyle(), DashboardModel::Heatmap);
    EXPECT_THAT(state().usageTrendBuckets.get(), SizeIs(365));
    EXPECT_THAT(model->trendChart().marks, SizeIs(30)) << "the metrics stay those of 30 days";

    model->setPeriod(3);
    EXPECT_EQ(model->chartStyle(), DashboardModel::Bar);
    EXPECT_EQ(model->period(), 3);
}

TEST_F(DashboardModelTest, OtherStylesLeaveThePeriodAndDailyLeavesTheHeatmap)
{
    open();
    model->setPeriod(0);
    model->setChartStyle(DashboardModel::Line);
    EXPECT_EQ(model->period(), 0);
    model->setChartStyle(DashboardModel::Heatmap);
    model->setPeriod(1);
    EXPECT_EQ(model->chartStyle(), DashboardModel::Heatmap);
}

TEST_F(DashboardModelTest, TheHeatmapIsNeverShownOverOtherThanDailyBuckets)
{
    open();
    model->setPeriod(2);
    QList<UsageTrendPeriod> periods;
    const auto note = [&] {
        if (model->chartStyle() == DashboardModel::Heatmap)
            periods.append(state().usageTrendPeriod.get());
    };
    QObject::connect(model.get(), &DashboardModel::chartStyleChanged, model.get(), note);
    QObject::connect(model.get(), &DashboardModel::chartChanged, model.get(), note);
    QObject::connect(model.get(), &DashboardModel::periodChanged, model.get(), note);
    model->setChartStyle(DashboardModel::Heatmap);
    model->setPeriod(3);
    EXPECT_EQ(periods, QList<UsageTrendPeriod>({UsageTrendPeriod::daily}));
}

TEST_F(DashboardModelTest, TheHeatmapCoversAYear)
{
    record({eventAt(date("2024-03-15T11:30:00+01:00"), 5)});
    open().setChartStyle(DashboardModel::Heatmap);
    const HeatmapChart chart = model->heatmapChart();
    EXPECT_EQ(chart.marks.last().readOut, u"15 Mar 2024: 5 words"_s);
    EXPECT_EQ(chart.marks.last().level, 4);
    EXPECT_THAT(chart.monthLabels, SizeIs(53));
    toggle();
    toggle();
    EXPECT_EQ(model->heatmapChart().marks.last().readOut, u"15 Mar 2024: 7 words"_s)
        << "a dictation more";
}

} // namespace
} // namespace kestrova
