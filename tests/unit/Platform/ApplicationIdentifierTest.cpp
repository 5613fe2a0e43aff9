#include "Platform/Linux/Applications/ApplicationIdentifier.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

DesktopEntry entry(const QString &identifier)
{
    DesktopEntry result;
    result.identifier = identifier;
    return result;
}

DesktopEntry withClass(const QString &identifier, const QString &startupWMClass)
{
    DesktopEntry result = entry(identifier);
    result.startupWMClass = startupWMClass;
    return result;
}

DesktopEntry withCommand(const QString &identifier, const QString &executable,
                         const QStringList &arguments = {})
{
    DesktopEntry result = entry(identifier);
    result.executable = executable;
    result.arguments = arguments;
    return result;
}

WindowClues ofClass(const QString &instanceName, const QString &className)
{
    return {{}, instanceName, className, {}};
}

WindowClues ofProgram(const QString &executable)
{
    return {{}, {}, {}, executable};
}

// "none" or the identifier.
QString identified(const WindowClues &clues, const QList<DesktopEntry> &entries)
{
    const DesktopEntry *const found = identifyApplication(clues, entries);
    return found ? found->identifier : u"none"_s;
}

TEST(ApplicationIdentifier, NothingMatchesAWindowThatTellsNothing)
{
    EXPECT_EQ(identified({}, {entry(u""_s), withCommand(u"a"_s, u""_s), withClass(u"b"_s, u""_s)}),
              u"none"_s);
}

TEST(ApplicationIdentifier, AnUnknownApplicationIsNotIdentified)
{
    EXPECT_EQ(identified({u"org.example.Other"_s, u"other"_s, u"Other"_s, u"/usr/bin/other"_s},
                         {entry(u"xfce4-terminal"_s), withCommand(u"vim"_s, u"/usr/bin/vim"_s)}),
              u"none"_s);
}

TEST(ApplicationIdentifier, TheGtkIdentifierGoesBeforeTheClass)
{
    const QList entries{withClass(u"first"_s, u"Mousepad"_s), entry(u"org.xfce.mousepad"_s)};
    EXPECT_EQ(identified({u"org.xfce.mousepad"_s, u"mousepad"_s, u"Mousepad"_s, {}}, entries),
              u"org.xfce.mousepad"_s);
}

TEST(ApplicationIdentifier, AGtkIdentifierWithoutAnEntryLeavesTheClassToDecide)
{
    const QList entries{withClass(u"libreoffice-calc"_s, u"libreoffice-calc"_s),
                        withClass(u"libreoffice-writer"_s, u"libreoffice-writer"_s)};
    EXPECT_EQ(
        identified({u"org.libreoffice"_s, u"libreoffice"_s, u"libreoffice-writer"_s, {}}, entries),
        u"libreoffice-writer"_s);
}

TEST(ApplicationIdentifier, TheStartupClassGoesBeforeAnEqualIdentifier)
{
    EXPECT_EQ(identified(ofClass(u"xterm"_s, u"XTerm"_s),
                         {entry(u"xterm"_s), withClass(u"debian-xterm"_s, u"XTerm"_s)}),
              u"debian-xterm"_s);
}

TEST(ApplicationIdentifier, AWebApplicationIsNotItsBrowser)
{
    const QList entries{withClass(u"chromium"_s, u"chromium"_s),
                        withClass(u"chrome-mail"_s, u"crx_mail"_s)};
    EXPECT_EQ(identified(ofClass(u"crx_mail"_s, u"Chromium"_s), entries), u"chrome-mail"_s);
    EXPECT_EQ(identified(ofClass(u"chromium"_s, u"Chromium"_s), entries), u"chromium"_s);
}

TEST(ApplicationIdentifier, NamesCompareWithoutRegardToCase)
{
    EXPECT_EQ(identified({u"ORG.Gnome.gedit"_s, {}, {}, {}}, {entry(u"org.gnome.gedit"_s)}),
              u"org.gnome.gedit"_s);
    EXPECT_EQ(identified(ofClass(u"x"_s, u"EMACS"_s), {withClass(u"emacs"_s, u"Emacs"_s)}),
              u"emacs"_s);
    EXPECT_EQ(identified(ofClass(u"x"_s, u"Xfce4-terminal"_s), {entry(u"xfce4-terminal"_s)}),
              u"xfce4-terminal"_s);
    EXPECT_EQ(identified(ofClass(u"x"_s, u"kate"_s), {entry(u"org.kde.Kate"_s)}),
              u"org.kde.Kate"_s);
}

TEST(ApplicationIdentifier, AnEqualIdentifierGoesBeforeAReverseDnsSuffix)
{
    EXPECT_EQ(
        identified(ofClass(u"kate"_s, u"kate"_s), {entry(u"org.kde.kate"_s), entry(u"kate"_s)}),
        u"kate"_s);
}

TEST(ApplicationIdentifier, OnlyTheWholeLastPartIsAReverseDnsSuffix)
{
    EXPECT_EQ(identified(ofClass(u"kate"_s, u"kde.kate"_s), {entry(u"org.kde.okate"_s)}),
              u"none"_s);
    EXPECT_EQ(identified(ofClass({}, u"kde"_s), {entry(u"org.kde.kate"_s)}), u"none"_s);
    EXPECT_EQ(identified(ofClass({}, {}), {entry(u"org.kde."_s)}), u"none"_s);
}

TEST(ApplicationIdentifier, AReverseDnsSuffixGoesBeforeTheProgram)
{
    WindowClues clues = ofClass(u"kate"_s, u"kate"_s);
    clues.executable = u"/usr/bin/kate"_s;
    EXPECT_EQ(
        identified(clues, {withCommand(u"editor"_s, u"/usr/bin/kate"_s), entry(u"org.kde.kate"_s)}),
        u"org.kde.kate"_s);
}

TEST(ApplicationIdentifier, TheProgramIdentifiesAWindowWithAnotherClass)
{
    WindowClues clues = ofClass(u"main"_s, u"Main"_s);
    clues.executable = u"/opt/signal/signal-desktop"_s;
    EXPECT_EQ(identified(clues, {withCommand(u"signal"_s, u"/opt/signal/signal-desktop"_s,
                                             {u"--no-sandbox"_s})}),
              u"signal"_s);
}

TEST(ApplicationIdentifier, TheCommandWithoutOptionsIsTheApplicationItself)
{
    const QList entries{withCommand(u"a-settings"_s, u"/usr/bin/a"_s, {u"--preferences"_s}),
                        withCommand(u"a"_s, u"/usr/bin/a"_s)};
    EXPECT_EQ(identified(ofProgram(u"/usr/bin/a"_s), entries), u"a"_s);
}

TEST(ApplicationIdentifier, AnInterpreterIsNotTheScriptsApplication)
{
    const QList entries{
        withCommand(u"notes"_s, u"/usr/bin/python3.11"_s, {u"/usr/share/notes/main.py"_s})};
    EXPECT_EQ(identified(ofProgram(u"/usr/bin/python3.11"_s), entries), u"none"_s);
}

TEST(ApplicationIdentifier, AProgramForTheTerminalOwnsNoWindow)
{
    DesktopEntry python = withCommand(u"python3.11"_s, u"/usr/bin/python3.11"_s);
    python.runsInTerminal = true;
    EXPECT_EQ(identified(ofProgram(u"/usr/bin/python3.11"_s), {python}), u"none"_s);
}

TEST(ApplicationIdentifier, ProgramsOfTheSameNameInOtherFoldersDiffer)
{
    EXPECT_EQ(identified(ofProgram(u"/opt/b/a"_s), {withCommand(u"a"_s, u"/usr/bin/a"_s)}),
              u"none"_s);
}

TEST(ApplicationIdentifier, AShownEntryGoesBeforeAHiddenOne)
{
    DesktopEntry hidden = withClass(u"a"_s, u"Emacs"_s);
    hidden.isShown = false;
    EXPECT_EQ(identified(ofClass(u"emacs"_s, u"Emacs"_s), {hidden, withClass(u"b"_s, u"Emacs"_s)}),
              u"b"_s);
}

TEST(ApplicationIdentifier, AHiddenEntryIsFoundWhenItIsTheOnlyOne)
{
    DesktopEntry hidden = withClass(u"a"_s, u"Emacs"_s);
    hidden.isShown = false;
    EXPECT_EQ(identified(ofClass(u"emacs"_s, u"Emacs"_s), {hidden}), u"a"_s);
}

TEST(ApplicationIdentifier, OfSeveralWithTheClassTheOneNamedLikeItWins)
{
    const QList entries{withClass(u"client"_s, u"Emacs"_s), withClass(u"emacs"_s, u"Emacs"_s)};
    EXPECT_EQ(identified(ofClass(u"emacs"_s, u"Emacs"_s), entries), u"emacs"_s);
}

TEST(ApplicationIdentifier, OfEqualMatchesTheEarlierWins)
{
    const QList entries{withClass(u"a"_s, u"Emacs"_s), withClass(u"b"_s, u"Emacs"_s)};
    EXPECT_EQ(identified(ofClass(u"emacs"_s, u"Emacs"_s), entries), u"a"_s);
}

} // namespace
} // namespace kestrova
