#include "Services/Shortcuts/NamedShortcutManager.h"

#include "Platform/Fake/Keys/FakeGlobalShortcuts.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using Binding = GlobalShortcuts::Binding;

constexpr HotkeyShortcut mainShortcut{49, HotkeyShortcut::command | HotkeyShortcut::shift};
constexpr HotkeyShortcut slotShortcut{18, HotkeyShortcut::command | HotkeyShortcut::option};

class NamedShortcutManagerTest : public testing::Test
{
protected:
    HotkeyBinding binding(const QString &id, const HotkeyShortcut &shortcut)
    {
        return {.id = id,
                .shortcut = shortcut,
                .handler = [this, id] { called.append(id); },
                .description = u"about "_s + id};
    }

    FakeGlobalShortcuts shortcuts;
    std::unique_ptr<NamedShortcutManager> manager =
        std::make_unique<NamedShortcutManager>(shortcuts);
    QStringList called;
};

TEST_F(NamedShortcutManagerTest, TheDesktopIsAskedByNameWithWhatItShows)
{
    manager->registerBindings(
        {binding(u"toggle"_s, mainShortcut), binding(u"hotbar-1"_s, slotShortcut)});
    const QList<NamedShortcut> expected{{u"toggle"_s, u"about toggle"_s, mainShortcut},
                                        {u"hotbar-1"_s, u"about hotbar-1"_s, slotShortcut}};
    EXPECT_EQ(shortcuts.requests(), QList<QList<NamedShortcut>>{expected});
}

TEST_F(NamedShortcutManagerTest, AShortcutCallsItsHandlerOnceItIsBound)
{
    manager->registerBindings(
        {binding(u"toggle"_s, mainShortcut), binding(u"hotbar-1"_s, slotShortcut)});
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called, QStringList()) << "the desktop has not answered yet";
    shortcuts.accept();
    shortcuts.press(u"hotbar-1"_s);
    shortcuts.press(u"toggle"_s);
    shortcuts.press(u"hotbar-9"_s);
    EXPECT_EQ(called, (QStringList{u"hotbar-1"_s, u"toggle"_s}));
}

TEST_F(NamedShortcutManagerTest, WhatTheUserHasTakenAwayCallsNobody)
{
    manager->registerBindings({binding(u"toggle"_s, mainShortcut)});
    shortcuts.refuse();
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called, QStringList());
    shortcuts.change(u"toggle"_s, u"F9"_s);
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called, QStringList{u"toggle"_s});
    shortcuts.change(u"toggle"_s, {});
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called.size(), 1);
}

TEST_F(NamedShortcutManagerTest, TheDesktopIsAskedAgainOnlyForSomethingElse)
{
    manager->registerBindings({binding(u"toggle"_s, mainShortcut)});
    shortcuts.accept();
    manager->unregister();
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called, QStringList()) << "not armed";

    manager->registerBindings({binding(u"toggle"_s, mainShortcut)});
    EXPECT_EQ(shortcuts.requests().size(), 1);
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called, QStringList{u"toggle"_s});

    manager->registerBindings({binding(u"toggle"_s, slotShortcut)});
    EXPECT_EQ(shortcuts.requests().size(), 2);
    EXPECT_EQ(shortcuts.binding(u"toggle"_s), Binding::pending);
}

TEST_F(NamedShortcutManagerTest, AShortcutIsCalledWhatTheDesktopCallsIt)
{
    const HotkeyBinding toggle = binding(u"toggle"_s, mainShortcut);
    int changes = 0;
    manager->observeStatus([&] { ++changes; });
    EXPECT_EQ(manager->status(toggle), (HotkeyStatus{HotkeyStatus::pending, u"⌘⇧Space"_s}))
        << "it has not even been asked for";
    manager->registerBindings({toggle});
    EXPECT_EQ(manager->status(toggle), (HotkeyStatus{HotkeyStatus::pending, u"⌘⇧Space"_s}));

    shortcuts.accept();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(manager->status(toggle), (HotkeyStatus{HotkeyStatus::armed, u"keys of toggle"_s}));
    shortcuts.change(u"toggle"_s, u"F9"_s);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(manager->status(toggle), (HotkeyStatus{HotkeyStatus::armed, u"F9"_s}));
    manager->unregister();
    EXPECT_EQ(manager->status(toggle).keys, u"F9"_s) << "while another is recorded, too";
    shortcuts.change(u"toggle"_s, {});
    EXPECT_EQ(manager->status(toggle), (HotkeyStatus{HotkeyStatus::refused}));
}

TEST_F(NamedShortcutManagerTest, TheKeysAreChosenInTheDesktopsDialogWhereItHasOne)
{
    EXPECT_EQ(manager->editing(), ShortcutEditing::inDesktopDialog);
    manager->configure();
    EXPECT_EQ(shortcuts.configurations(), 1);
    shortcuts.setCanConfigure(false);
    EXPECT_EQ(manager->editing(), ShortcutEditing::inDesktopSettings);
}

TEST_F(NamedShortcutManagerTest, NoBindingsAreAskedForToo)
{
    manager->registerBindings({});
    EXPECT_EQ(shortcuts.requests(), QList<QList<NamedShortcut>>{{}});
}

TEST_F(NamedShortcutManagerTest, AHandlerMayReplaceTheBindingsOrEndTheManager)
{
    HotkeyBinding replacing = binding(u"toggle"_s, mainShortcut);
    replacing.handler = [this] { manager->registerBindings({binding(u"other"_s, slotShortcut)}); };
    manager->registerBindings({replacing});
    shortcuts.accept();
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(shortcuts.binding(u"other"_s), Binding::pending);

    HotkeyBinding ending = binding(u"toggle"_s, mainShortcut);
    ending.handler = [this] { manager.reset(); };
    manager->registerBindings({ending});
    shortcuts.accept();
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(manager, nullptr);
    shortcuts.press(u"toggle"_s);
    EXPECT_EQ(called, QStringList());
}

} // namespace
} // namespace kestrova
