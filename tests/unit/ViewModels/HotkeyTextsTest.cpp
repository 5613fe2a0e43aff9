#include "ViewModels/Texts/HotkeyTexts.h"

#include "Models/Settings/HotkeyShortcut.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(HotkeyTextsTest, AShortcutIsCalledWhatItsBinderCallsIt)
{
    EXPECT_EQ(shownKeys({.keys = u"Logo+Space"_s}), u"Logo+Space"_s);
    EXPECT_EQ(shownKeys({.state = HotkeyStatus::armed}), u"Set by the desktop"_s);
    EXPECT_EQ(shownKeys({.state = HotkeyStatus::refused}), u"None"_s);
}

TEST(HotkeyTextsTest, OnlyAShortcutThatIsNotAsExpectedHasAHint)
{
    const auto hint = [](const HotkeyStatus &status) {
        return hotkeyHint(status, ShortcutEditing::inDesktopDialog);
    };
    EXPECT_EQ(hint({.keys = u"⌘A"_s}), QString());
    EXPECT_EQ(hint({.state = HotkeyStatus::armed}),
              u"The desktop does not say which keys this shortcut has."_s);
    EXPECT_EQ(hint({HotkeyStatus::pending, u"⌘A"_s}),
              u"The desktop has not confirmed this shortcut yet."_s);
    EXPECT_EQ(hint({.state = HotkeyStatus::refused}),
              u"The desktop has not granted this shortcut. Choose its keys with Configure "
              "Shortcuts."_s);
    EXPECT_EQ(hotkeyHint({.state = HotkeyStatus::refused}, ShortcutEditing::inDesktopSettings),
              u"The desktop has not granted this shortcut. Choose its keys in the desktop's "
              "settings."_s);
}

TEST(HotkeyTextsTest, TheModifiersThatTheKeyboardLacksAreNamed)
{
    const auto hint = [](quint32 missing) {
        return hotkeyHint({HotkeyStatus::untypable, u"⌘⌥A"_s, missing}, ShortcutEditing::inProgram);
    };
    const QString advice = u" Record another shortcut, or change the keyboard's options."_s;
    EXPECT_EQ(hint(0), u"⌘⌥A cannot be typed on this keyboard."_s + advice);
    EXPECT_EQ(hint(HotkeyShortcut::command),
              u"⌘⌥A cannot be typed on this keyboard: it has no Super (⌘) key."_s + advice);
    EXPECT_EQ(hint(HotkeyShortcut::command | HotkeyShortcut::option),
              u"⌘⌥A cannot be typed on this keyboard: it has no Super (⌘) and no Alt (⌥) key."_s +
                  advice);
}

TEST(HotkeyTextsTest, WhereTheDesktopDecidesNoKeysArePromised)
{
    EXPECT_EQ(shortcutEditingTip(ShortcutEditing::inProgram),
              u"Tip: press Escape in the recorder to cancel."_s);
    for (const auto editing :
         {ShortcutEditing::inDesktopDialog, ShortcutEditing::inDesktopSettings}) {
        EXPECT_EQ(shortcutEditingTip(editing),
                  u"On this desktop, the keys of all shortcuts are chosen in its settings."_s);
        EXPECT_FALSE(hotbarExplanation(editing).contains(u'⌘'));
    }
}

TEST(HotkeyTextsTest, WhatTheHotbarCannotDoOnADesktopIsExplained)
{
    EXPECT_EQ(hotbarLimits(WorkspaceCapabilities::all()), QString());
    EXPECT_TRUE(hotbarLimits({.knowsFront = false, .canActivate = true, .canList = true})
                    .contains(u"none can be assigned"_s));
    const QString both = hotbarLimits({});
    EXPECT_TRUE(both.contains(u"none can be assigned"_s));
    EXPECT_TRUE(both.contains(u"has to be there when its slot is used"_s));
}

} // namespace
} // namespace kestrova
