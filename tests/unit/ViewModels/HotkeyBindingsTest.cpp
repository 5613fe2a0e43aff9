#include "ViewModels/HotkeyBindings.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

const HotkeyShortcut commandF{3, HotkeyShortcut::command};

HotkeyShortcut defaultOf(int slotIndex)
{
    return HotkeyShortcut::defaultHotbarNumber(slotIndex).value();
}

class HotkeyBindingsTest : public testing::Test
{
protected:
    QList<HotkeyBinding> bindings()
    {
        return hotkeyBindings(
            settings, [this] { called.append(u"main"_s); },
            [this](int slot) { called.append(u"slot %1"_s.arg(slot)); });
    }

    AppSettings settings = AppSettings::defaults();
    QStringList called;
};

TEST_F(HotkeyBindingsTest, TheMainShortcutComesFirstAndThenEverySlotAssignedOrNot)
{
    const auto all = bindings();
    ASSERT_EQ(all.size(), 10);
    EXPECT_EQ(all[0].id, u"toggle"_s);
    EXPECT_EQ(all[0].shortcut, HotkeyShortcut::defaultMain());
    for (int slot = 1; slot <= 9; ++slot) {
        EXPECT_EQ(all[slot].id, u"hotbar-%1"_s.arg(slot));
        EXPECT_EQ(all[slot].shortcut.displayText(), u"⌘⌥%1"_s.arg(slot));
    }
}

TEST_F(HotkeyBindingsTest, TheDescriptionsStayAsTheyAreWhateverTheSlotsHold)
{
    const auto descriptions = [this] {
        QStringList all;
        for (const HotkeyBinding &binding : bindings())
            all.append(binding.description);
        return all;
    };
    const QStringList before = descriptions();
    EXPECT_EQ(before[0], u"Start or end a dictation"_s);
    EXPECT_EQ(before[3], u"Dictate into hotbar slot 3"_s);
    settings.setHotbarAssignment(3, u"org.editor"_s, u"Editor"_s);
    EXPECT_EQ(descriptions(), before);
}

TEST_F(HotkeyBindingsTest, UnassignedSlotsTakeTheirShortcutsFromNobody)
{
    settings.setHotbarAssignment(3, u"org.editor"_s, std::nullopt);
    QStringList exclusive;
    for (const HotkeyBinding &binding : bindings()) {
        if (binding.isExclusive)
            exclusive.append(binding.id);
    }
    EXPECT_EQ(exclusive, QStringList({u"toggle"_s, u"hotbar-3"_s}));
}

TEST_F(HotkeyBindingsTest, OfSeveralEntriesOfASlotTheFirstCounts)
{
    settings.hotbarAssignments = {
        {.slotIndex = 2, .bundleIdentifier = {}, .appName = {}, .shortcut = commandF},
        {.slotIndex = 2,
         .bundleIdentifier = u"org.editor"_s,
         .appName = {},
         .shortcut = HotkeyShortcut{5, HotkeyShortcut::command}}};
    EXPECT_EQ(bindings()[2].shortcut, commandF);
    EXPECT_FALSE(bindings()[2].isExclusive);
}

TEST_F(HotkeyBindingsTest, EachCallsItsOwnCommand)
{
    for (const HotkeyBinding &binding : bindings())
        binding.handler();
    EXPECT_EQ(called,
              QStringList({u"main"_s, u"slot 1"_s, u"slot 2"_s, u"slot 3"_s, u"slot 4"_s,
                           u"slot 5"_s, u"slot 6"_s, u"slot 7"_s, u"slot 8"_s, u"slot 9"_s}));
}

TEST_F(HotkeyBindingsTest, OwnShortcutsReplaceTheDefaults)
{
    settings.shortcut = {24, HotkeyShortcut::control};
    settings.setHotbarShortcut(5, commandF);
    EXPECT_EQ(bindings()[0].shortcut, (HotkeyShortcut{24, HotkeyShortcut::control}));
    EXPECT_EQ(bindings()[5].shortcut, commandF);
    EXPECT_EQ(bindings()[6].shortcut, defaultOf(6));
}

TEST_F(HotkeyBindingsTest, OfTwoEntriesForASlotTheFirstCounts)
{
    settings.hotbarAssignments = {{3, {}, {}, commandF}, {3, {}, {}, defaultOf(9)}};
    EXPECT_EQ(bindings().size(), 10);
    EXPECT_EQ(bindings()[3].shortcut, commandF);
    EXPECT_EQ(bindings()[1].shortcut, defaultOf(1)) << "a slot without an entry has its default";
}

TEST_F(HotkeyBindingsTest, DuplicatesStay)
{
    settings.setHotbarShortcut(2, settings.shortcut);
    EXPECT_EQ(bindings().size(), 10);
    EXPECT_EQ(bindings()[2].shortcut, bindings()[0].shortcut);
}

TEST_F(HotkeyBindingsTest, TheMainShortcutMustNotBeASlots)
{
    EXPECT_EQ(mainShortcutConflict(settings, defaultOf(9)),
              u"That shortcut conflicts with hotbar slot 9."_s);
    EXPECT_FALSE(mainShortcutConflict(settings, commandF));
    EXPECT_FALSE(mainShortcutConflict(settings, settings.shortcut)) << "its own is no conflict";

    settings.setHotbarShortcut(7, commandF);
    settings.setHotbarShortcut(4, commandF);
    EXPECT_EQ(mainShortcutConflict(settings, commandF),
              u"That shortcut conflicts with hotbar slot 4."_s);
    EXPECT_FALSE(mainShortcutConflict(settings, defaultOf(7))) << "slot 7 no longer has it";
}

TEST_F(HotkeyBindingsTest, ASlotsShortcutMustNotBeTheMainOneNorAnotherSlots)
{
    EXPECT_EQ(hotbarShortcutConflict(settings, 2, settings.shortcut),
              u"That shortcut conflicts with the main recording shortcut."_s);
    EXPECT_EQ(hotbarShortcutConflict(settings, 2, defaultOf(1)),
              u"That shortcut is already used by slot 1."_s);
    EXPECT_FALSE(hotbarShortcutConflict(settings, 2, defaultOf(2))) << "its own is no conflict";
    EXPECT_FALSE(hotbarShortcutConflict(settings, 2, commandF));

    settings.setHotbarShortcut(1, settings.shortcut);
    EXPECT_EQ(hotbarShortcutConflict(settings, 2, settings.shortcut),
              u"That shortcut conflicts with the main recording shortcut."_s)
        << "the main one is compared before any slot";
}

TEST_F(HotkeyBindingsTest, ShortcutsDifferByKeyAndByModifiers)
{
    EXPECT_FALSE(mainShortcutConflict(settings, {defaultOf(1).keyCode, HotkeyShortcut::command}));
    EXPECT_FALSE(mainShortcutConflict(settings, {commandF.keyCode, defaultOf(1).modifiers}));
}

} // namespace
} // namespace kestrova
