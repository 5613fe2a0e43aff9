#include "Conformance/ConformanceDesktop.h"

#include "Services/Protocols.h"
#include "ViewModels/DictationServices.h"
#include "support/QtPrinting.h"

#include <QGuiApplication>
#include <QStringList>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

const QString editor = ConformanceDesktop::editor;
const QString browser = ConformanceDesktop::browser;

} // namespace

TEST_P(Conformance, TheApplicationInFrontIsToldWhereThatIsKnown)
{
    desktop->start(editor);
    EXPECT_EQ(front(), capabilities().knowsFront ? std::optional(editor) : std::nullopt);
    desktop->start(browser);
    EXPECT_EQ(front(), capabilities().knowsFront ? std::optional(browser) : std::nullopt);
    desktop->turnTo(editor);
    EXPECT_EQ(front(), capabilities().knowsFront ? std::optional(editor) : std::nullopt);
}

TEST_P(Conformance, ActivationsAreToldWhereTheFrontIsKnownAsLongAsSomebodyObserves)
{
    QStringList activated;
    auto observation =
        platform().workspace->observeActivations([&](const RunningApplication &application) {
            activated.append(application.bundleIdentifier.value_or(u"unknown"_s));
        });
    desktop->start(editor);
    desktop->start(browser);
    if (capabilities().knowsFront) {
        EXPECT_TRUE(desktop->waitUntil([&] { return activated.contains(browser); }));
    }
    observation.reset();
    activated.clear();
    desktop->turnTo(editor);
    EXPECT_EQ(activated, QStringList());
}

TEST_P(Conformance, WhatRunsIsListedWhereThatIsKnown)
{
    Workspace &workspace = *platform().workspace;
    EXPECT_TRUE(workspace.runningApplications(editor).isEmpty());
    const qint32 process = desktop->start(editor);
    const auto running = workspace.runningApplications(editor);
    const auto application = workspace.runningApplication(process);
    if (!capabilities().canList) {
        EXPECT_TRUE(running.isEmpty());
        EXPECT_FALSE(application);
        return;
    }
    ASSERT_EQ(running.size(), 1);
    EXPECT_EQ(running.first().processIdentifier, process);
    EXPECT_FALSE(running.first().isTerminated);
    EXPECT_EQ(application, running.first());
    EXPECT_TRUE(workspace.isOfApplication(process, running.first()));
    EXPECT_FALSE(workspace.isOfApplication(1, running.first()));
}

TEST_P(Conformance, AnActivatedApplicationComesToTheFrontWhereThatCanBe)
{
    const qint32 process = desktop->start(editor);
    desktop->start(browser);
    RunningApplication application;
    application.processIdentifier = process;
    application.bundleIdentifier = editor;
    platform().workspace->activate(application);
    if (capabilities().canActivate && capabilities().knowsFront) {
        EXPECT_TRUE(desktop->waitUntil([this] { return front() == editor; }));
    }
}

TEST_P(Conformance, OnlyWhatIsInstalledCanBeOpened)
{
    Workspace &workspace = *platform().workspace;
    EXPECT_TRUE(workspace.isInstalled(editor));
    EXPECT_FALSE(workspace.isInstalled(u"org.example.Absent"_s));
    EXPECT_FALSE(workspace.isInstalled(u""_s));
    EXPECT_EQ(workspace.openApplication(u"org.example.Absent"_s), 0);
    EXPECT_FALSE(workspace.openAddress(QUrl(u"absent-scheme:nothing"_s)));
}

TEST_P(Conformance, ATextOnTheClipboardIsReadByAll)
{
    for (const QString &text :
         {u"one"_s, u"zwei, drei: äöü 日本語 😀"_s, QString(1'000'000, u'x')}) {
        platform().pasteboard->setString(text);
        EXPECT_EQ(platform().pasteboard->string(), text);
        EXPECT_EQ(desktop->readClipboard(), text);
    }
    desktop->writeClipboard(u"theirs"_s);
    EXPECT_EQ(platform().pasteboard->string(), u"theirs"_s);
}

TEST_P(Conformance, WhoAsksForATextIsNoted)
{
    const auto offer = platform().pasteboard->setString(u"text"_s);
    EXPECT_EQ(offer->takeReaders(), QList<qint32>());
    desktop->readClipboard();
    EXPECT_EQ(offer->takeReaders().size(), 1);
    EXPECT_EQ(offer->takeReaders(), QList<qint32>()) << "each once";
    EXPECT_FALSE(offer->isReplaced());
}

TEST_P(Conformance, ATextThatAnotherProgramReplacesIsSaidToBe)
{
    const auto first = platform().pasteboard->setString(u"first"_s);
    const auto second = platform().pasteboard->setString(u"second"_s);
    EXPECT_FALSE(first->isReplaced()) << "our own text is no replacement";
    desktop->writeClipboard(u"theirs"_s);
    EXPECT_TRUE(desktop->waitUntil([&] { return second->isReplaced(); }));
}

TEST_P(Conformance, AShortcutCallsItsHandlerUntilItIsUnregistered)
{
    ASSERT_EQ(platform().systemAccess->accessibility(), Access::granted);
    const auto manager = makeHotkeyManager(platform());
    const HotkeyShortcut mainShortcut = HotkeyShortcut::defaultMain();
    const HotkeyShortcut slotShortcut = HotkeyShortcut::defaultHotbarNumber(1).value();
    QStringList called;
    const auto binding = [&](const QString &id, const HotkeyShortcut &shortcut) {
        return HotkeyBinding{.id = id,
                             .shortcut = shortcut,
                             .handler = [&called, id] { called.append(id); },
                             .description = u"About "_s + id};
    };
    const QList<HotkeyBinding> bindings{binding(u"toggle"_s, mainShortcut),
                                        binding(u"hotbar-1"_s, slotShortcut)};
    desktop->start(editor);
    manager->registerBindings(bindings);
    desktop->press(mainShortcut);
    EXPECT_TRUE(desktop->waitUntil([&] { return called == QStringList{u"toggle"_s}; }));
    desktop->press(slotShortcut);
    EXPECT_TRUE(desktop->waitUntil([&] { return called.size() == 2; }));
    EXPECT_EQ(called.last(), u"hotbar-1"_s);
    for (const HotkeyBinding &each : bindings) {
        EXPECT_EQ(manager->status(each).state, HotkeyStatus::armed);
        EXPECT_FALSE(manager->status(each).keys.isEmpty());
    }

    called.clear();
    manager->unregister();
    desktop->press(mainShortcut);
    manager->registerBindings({bindings.last()});
    desktop->press(slotShortcut);
    EXPECT_TRUE(desktop->waitUntil([&] { return !called.isEmpty(); }));
    EXPECT_EQ(called, QStringList{u"hotbar-1"_s}) << "it comes after the one that nobody wanted";
}

TEST_P(Conformance, ThePasteKeystrokeReachesTheApplicationInFront)
{
    desktop->start(editor);
    KeyEventPosting &keys = *platform().keyEvents;
    EXPECT_FALSE(keys.areModifiersHeld());
    EXPECT_FALSE(keys.isKeyboardTaken());
    const int before = desktop->keystrokesInFront();
    EXPECT_EQ(keys.postCommandV({}), KeyEventPosting::Outcome::sent);
    EXPECT_TRUE(desktop->waitUntil([&] { return desktop->keystrokesInFront() == before + 1; }));
}

TEST_P(Conformance, NoOtherWindowThanTheOneThatIsMeantGetsTheKeystroke)
{
    desktop->start(editor);
    const auto application = platform().workspace->frontmostApplication();
    const quint64 window = application ? application->keyboardWindow : 0;
    desktop->start(browser);
    const int before = desktop->keystrokesInFront();
    const auto outcome = platform().keyEvents->postCommandV({.window = window});
    if (window != 0) {
        EXPECT_EQ(outcome, KeyEventPosting::Outcome::notSent);
        EXPECT_EQ(desktop->keystrokesInFront(), before);
    } else {
        EXPECT_EQ(outcome, KeyEventPosting::Outcome::sent) << "any window may have it";
    }
}

TEST_P(Conformance, WindowsHaveScreensToStandOn)
{
    const QList<ScreenArea> areas = platform().windowing->screenAreas();
    ASSERT_FALSE(areas.isEmpty());
    for (const ScreenArea &area : areas) {
        EXPECT_FALSE(area.available.isEmpty());
        EXPECT_TRUE(area.geometry.contains(area.available));
    }
    EXPECT_EQ(platform().windowing->colorBehind(QRect()), std::nullopt);
}

} // namespace kestrova
