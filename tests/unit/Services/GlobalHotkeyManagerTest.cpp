#include "Services/Shortcuts/GlobalHotkeyManager.h"

#include "Platform/Fake/Keys/FakeKeyEventMonitoring.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr quint32 space = 49;
constexpr quint32 command = HotkeyShortcut::command;
constexpr quint32 shift = HotkeyShortcut::shift;
constexpr quint32 option = HotkeyShortcut::option;
constexpr quint32 control = HotkeyShortcut::control;

constexpr KeyEvent commandShiftSpace{space, command | shift};

class GlobalHotkeyManagerTest : public testing::Test
{
protected:
    HotkeyBinding binding(const QString &id, const HotkeyShortcut &shortcut)
    {
        return {id, shortcut, [this, id] { called.append(id); }};
    }

    FakeKeyEventMonitoring monitoring;
    GlobalHotkeyManager manager{monitoring};
    QStringList called;
};

TEST_F(GlobalHotkeyManagerTest, AShortcutInAnotherProgramCallsItsHandler)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift}),
                              binding(u"hotbar-1"_s, {18, command | option})});
    monitoring.pressGlobally({18, command | option});
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, (QStringList{u"hotbar-1"_s, u"toggle"_s}));
}

TEST_F(GlobalHotkeyManagerTest, AShortcutInOurOwnWindowCallsItsHandlerAndIsConsumed)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    EXPECT_TRUE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_EQ(called, QStringList{u"toggle"_s});
}

TEST_F(GlobalHotkeyManagerTest, OtherKeysInOurOwnWindowAreDelivered)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    EXPECT_FALSE(monitoring.pressLocally({space, command}));
    EXPECT_FALSE(monitoring.pressLocally({50, command | shift}));
    EXPECT_EQ(called, QStringList());
}

TEST_F(GlobalHotkeyManagerTest, OtherWindowsDoNotGetTheShortcutsWhileTheyAreRegistered)
{
    const HotkeyShortcut toggle{space, command | shift};
    const HotkeyShortcut slot{18, command | option};
    manager.registerBindings({binding(u"toggle"_s, toggle), binding(u"hotbar-1"_s, slot)});
    EXPECT_EQ(monitoring.grabbed(), (QList{toggle, slot}));
    manager.registerBindings({binding(u"toggle"_s, slot)});
    EXPECT_EQ(monitoring.grabbed(), QList{slot});
    manager.unregister();
    EXPECT_EQ(monitoring.grabbed(), QList<HotkeyShortcut>());
}

TEST_F(GlobalHotkeyManagerTest, ABindingThatIsNotExclusiveAnswersWhereNobodyHasReservedItsShortcut)
{
    const HotkeyShortcut slot{18, command | option};
    HotkeyBinding unassigned = binding(u"hotbar-1"_s, slot);
    unassigned.isExclusive = false;
    manager.registerBindings({unassigned});
    EXPECT_EQ(monitoring.grabbed(), QList<HotkeyShortcut>());
    monitoring.pressGlobally({.keyCode = 18, .modifiers = command | option, .isReserved = true});
    EXPECT_EQ(called, QStringList());
    monitoring.pressGlobally({18, command | option});
    EXPECT_EQ(called, QStringList{u"hotbar-1"_s});
}

TEST_F(GlobalHotkeyManagerTest, AnExclusiveBindingAnswersAlsoWhereAnotherProgramHasItsShortcut)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    monitoring.pressGlobally({.keyCode = space, .modifiers = command | shift, .isReserved = true});
    EXPECT_EQ(called, QStringList{u"toggle"_s});
}

TEST_F(GlobalHotkeyManagerTest, AnEmptyListInstallsBothMonitorsAndMatchesNothing)
{
    manager.registerBindings({});
    EXPECT_EQ(monitoring.globalMonitorCount(), 1);
    EXPECT_EQ(monitoring.localMonitorCount(), 1);
    EXPECT_FALSE(monitoring.pressLocally(commandShiftSpace));
}

TEST_F(GlobalHotkeyManagerTest, RegisteringAgainReplacesEverything)
{
    manager.registerBindings({binding(u"old"_s, {space, command | shift})});
    manager.registerBindings({binding(u"new"_s, {18, command})});
    EXPECT_EQ(monitoring.globalMonitorCount(), 1);
    EXPECT_EQ(monitoring.localMonitorCount(), 1);
    monitoring.pressGlobally(commandShiftSpace);
    monitoring.pressGlobally({18, command});
    EXPECT_EQ(called, QStringList{u"new"_s});
}

TEST_F(GlobalHotkeyManagerTest, TheSameShortcutsStayArmedAndCallTheNewHandlers)
{
    const HotkeyShortcut toggle{space, command | shift};
    const HotkeyShortcut slot{18, command | option};
    manager.registerBindings({binding(u"old"_s, toggle), binding(u"hotbar-1"_s, slot)});
    const int requests = monitoring.requestCount();
    manager.registerBindings({binding(u"new"_s, toggle), binding(u"hotbar-1"_s, slot)});
    EXPECT_EQ(monitoring.requestCount(), requests) << "nothing is asked of the system";
    EXPECT_EQ(monitoring.globalMonitorCount(), 1);
    EXPECT_EQ(monitoring.localMonitorCount(), 1);
    EXPECT_EQ(monitoring.grabbed(), (QList{toggle, slot}));
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, QStringList{u"new"_s});
}

TEST_F(GlobalHotkeyManagerTest, ShortcutsThatDifferInAnythingAreArmedAnew)
{
    const HotkeyShortcut toggle{space, command | shift};
    const HotkeyShortcut slot{18, command | option};
    HotkeyBinding unassigned = binding(u"hotbar-1"_s, slot);
    unassigned.isExclusive = false;
    manager.registerBindings({binding(u"toggle"_s, toggle), unassigned});
    EXPECT_EQ(monitoring.grabbed(), QList{toggle});
    manager.registerBindings({binding(u"toggle"_s, toggle), binding(u"hotbar-1"_s, slot)});
    EXPECT_EQ(monitoring.grabbed(), (QList{toggle, slot}));
    manager.registerBindings({binding(u"toggle"_s, toggle)});
    EXPECT_EQ(monitoring.grabbed(), QList{toggle});
    monitoring.pressGlobally({18, command | option});
    EXPECT_EQ(called, QStringList());
}

TEST_F(GlobalHotkeyManagerTest, ADirectionThatCouldNotBeObservedIsTriedAgain)
{
    const QList bindings{binding(u"toggle"_s, {space, command | shift})};
    monitoring.setGlobalAvailable(false);
    manager.registerBindings(bindings);
    monitoring.setGlobalAvailable(true);
    manager.registerBindings(bindings);
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, QStringList{u"toggle"_s});
}

TEST_F(GlobalHotkeyManagerTest, OfTwoBindingsWithOneShortcutOnlyTheFirstIsCalled)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift}),
                              binding(u"hotbar-1"_s, {space, command | shift})});
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_TRUE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_EQ(called, (QStringList{u"toggle"_s, u"toggle"_s}));
}

TEST_F(GlobalHotkeyManagerTest, EveryModifierHasToAgree)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    for (const quint32 modifier : {command, shift, option, control})
        monitoring.pressGlobally({space, (command | shift) ^ modifier});
    monitoring.pressGlobally({space, 0});
    EXPECT_EQ(called, QStringList());
}

TEST_F(GlobalHotkeyManagerTest, OtherModifierBitsAreIgnored)
{
    constexpr quint32 capsLock = 1024;
    constexpr quint32 function = 1 << 17;
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift | function})});
    monitoring.pressGlobally({space, command | shift | capsLock});
    EXPECT_EQ(called, QStringList{u"toggle"_s});
}

TEST_F(GlobalHotkeyManagerTest, EveryRepeatOfAHeldShortcutCallsTheHandlerAgain)
{
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    monitoring.pressGlobally(commandShiftSpace);
    for (int repeat = 0; repeat < 3; ++repeat)
        monitoring.pressGlobally({space, command | shift, true});
    EXPECT_EQ(called.size(), 4);
}

TEST_F(GlobalHotkeyManagerTest, AfterUnregisteringNothingIsObserved)
{
    manager.unregister();
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    manager.unregister();
    manager.unregister();
    EXPECT_EQ(monitoring.globalMonitorCount(), 0);
    EXPECT_EQ(monitoring.localMonitorCount(), 0);
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_FALSE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_EQ(called, QStringList());
}

TEST_F(GlobalHotkeyManagerTest, WithoutGlobalMonitorsShortcutsWorkInOurOwnWindows)
{
    monitoring.setGlobalAvailable(false);
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, QStringList());
    EXPECT_TRUE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_EQ(called, QStringList{u"toggle"_s});
}

TEST_F(GlobalHotkeyManagerTest, WithoutLocalMonitorsShortcutsWorkInOtherPrograms)
{
    monitoring.setLocalAvailable(false);
    manager.registerBindings({binding(u"toggle"_s, {space, command | shift})});
    EXPECT_FALSE(monitoring.pressLocally(commandShiftSpace));
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, QStringList{u"toggle"_s});
}

TEST_F(GlobalHotkeyManagerTest, AHandlerMayReplaceTheBindings)
{
    const HotkeyBinding second = binding(u"second"_s, {space, command | shift});
    manager.registerBindings({{u"first"_s, {space, command | shift}, [this, second] {
                                   manager.registerBindings({second});
                                   called.append(u"first"_s);
                               }}});
    EXPECT_TRUE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_EQ(called, QStringList{u"first"_s});
    EXPECT_EQ(monitoring.localMonitorCount(), 1);
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, (QStringList{u"first"_s, u"second"_s}));
}

TEST_F(GlobalHotkeyManagerTest, AShortcutIsArmedUnlessTheKeyboardCannotTypeIt)
{
    const HotkeyBinding toggle = binding(u"toggle"_s, {space, command | shift});
    int changes = 0;
    manager.observeStatus([&] { ++changes; });
    manager.registerBindings({toggle});
    EXPECT_EQ(manager.status(toggle), (HotkeyStatus{.keys = u"⌘⇧Space"_s}));

    monitoring.setMissingModifiers(command | option);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(manager.status(toggle),
              (HotkeyStatus{HotkeyStatus::untypable, u"⌘⇧Space"_s, command}));
    EXPECT_EQ(called, QStringList()) << "a change of the keyboard is no key";
    EXPECT_EQ(manager.editing(), ShortcutEditing::inProgram);
}

TEST_F(GlobalHotkeyManagerTest, AHandlerMayUnregister)
{
    manager.registerBindings({{u"first"_s, {space, command | shift}, [this] {
                                   manager.unregister();
                                   called.append(u"first"_s);
                               }}});
    monitoring.pressGlobally(commandShiftSpace);
    monitoring.pressGlobally(commandShiftSpace);
    EXPECT_EQ(called, QStringList{u"first"_s});
}

TEST_F(GlobalHotkeyManagerTest, AHandlerMayDestroyTheManager)
{
    auto own = std::make_unique<GlobalHotkeyManager>(monitoring);
    own->registerBindings({{u"first"_s, {space, command | shift}, [&] {
                                own.reset();
                                called.append(u"first"_s);
                            }}});
    EXPECT_TRUE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_FALSE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_EQ(called, QStringList{u"first"_s});
    EXPECT_EQ(monitoring.localMonitorCount(), 0);
    EXPECT_EQ(monitoring.globalMonitorCount(), 0);
}

} // namespace
} // namespace kestrova
