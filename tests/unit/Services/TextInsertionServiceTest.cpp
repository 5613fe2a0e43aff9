#include "Services/Dictation/TextInsertionService.h"
#include "Models/KestrovaError.h"
#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakePasteboard.h"
#include "support/ManualClock.h"
#include "support/ManualExecutors.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

RunningApplication running(qint32 pid, const QString &identifier, const QString &name = {})
{
    RunningApplication application;
    application.processIdentifier = pid;
    application.bundleIdentifier = identifier;
    if (!name.isEmpty())
        application.localizedName = name;
    application.isInTaskBar = true;
    return application;
}

class TextInsertionServiceTest : public testing::Test
{
protected:
    void insert(const QString &text, const std::optional<TargetApplication> &target = {},
                const std::stop_token &stop = {})
    {
        service.insert(text, target, stop);
    }

    QString failureOf(const std::optional<TargetApplication> &target)
    {
        try {
            insert(u"text"_s, target);
        } catch (const ReadableError &error) {
            return error.errorDescription();
        }
        return u"no failure"_s;
    }

    /// The desktop obeys: what is activated comes to the front.
    void obey()
    {
        desktop->setHook([this](const QString &action) {
            if (action.startsWith(u"activate "_s))
                desktop->bringToFront(action.mid(9).toInt());
        });
    }

    std::shared_ptr<FakeDesktop> desktop = std::make_shared<FakeDesktop>();
    FakeWorkspace workspace{desktop};
    FakeKeyEventPosting keyEvents{desktop};
    FakeScriptRunning scripts{desktop};
    FakePasteboard pasteboard;
    ImmediateMainExecutor main;
    ManualClock clock;
    /// Who asks for the text is another test's concern.
    const Timings timings{.requestWait = 0ns};
    TextInsertionService service{workspace, pasteboard, keyEvents, scripts, main, clock, timings};
    const TargetApplication mail{30, u"org.example.Mail"_s, u"Mail"_s};
};

TEST_F(TextInsertionServiceTest, BlankTextDoesNothing)
{
    pasteboard.put(u"before"_s);
    insert(u" \n\t "_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList());
    EXPECT_EQ(pasteboard.string(), u"before"_s);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(TextInsertionServiceTest, WithoutTargetItPastesIntoWhateverIsInFront)
{
    pasteboard.put(u"before"_s);
    insert(u"  hello \n"_s);
    EXPECT_EQ(desktop->actions(), QStringList{u"paste"_s});
    EXPECT_EQ(pasteboard.string(), u"hello"_s);
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>{140ms});
}

TEST_F(TextInsertionServiceTest, ATargetInFrontIsPastedIntoWithoutActivation)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    desktop->bringToFront(30);
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList{u"paste"_s});
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>{140ms});
}

TEST_F(TextInsertionServiceTest, ATargetBehindIsActivatedFirst)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(31);
    obey();
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, WhereTheFrontIsUnknownItIsNeitherWaitedForNorAFailure)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(31);
    desktop->tellNothing();
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList{u"paste"_s}) << "no script either";
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>{140ms});
    EXPECT_EQ(pasteboard.string(), u"hello"_s);
}

TEST_F(TextInsertionServiceTest, WhereTheFrontIsUnknownAnApplicationIsOpenedOnce)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    desktop->tellNothing();
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), (QStringList{u"open org.example.Mail"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, WhereTheFrontIsUnknownAKeyboardThatIsTakenStillStopsThePaste)
{
    desktop->tellNothing();
    desktop->setKeyboardTaken(true);
    EXPECT_EQ(failureOf(mail), u"Lost focus on Mail before paste."_s);
    EXPECT_EQ(desktop->actions(), QStringList());
    EXPECT_EQ(pasteboard.string(), u"text"_s);
}

TEST_F(TextInsertionServiceTest, AnApplicationThatIsNotRunningIsOpened)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    desktop->setHook([this](const QString &action) {
        if (action.startsWith(u"open "_s)) {
            desktop->setRunning({running(77, u"org.example.Mail"_s)});
            desktop->bringToFront(77);
        }
    });
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"open org.example.Mail"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, AnApplicationThatIsNeitherRunningNorInstalledIsLeftToTheScript)
{
    desktop->setScriptsSucceed(true);
    desktop->setHook([this](const QString &action) {
        if (action == u"script activate org.example.Mail"_s) {
            desktop->setRunning({running(77, u"org.example.Mail"_s)});
            desktop->bringToFront(77);
        }
    });
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"script activate org.example.Mail"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, ATargetThatStaysBehindFailsAfterThreeAttempts)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    EXPECT_EQ(failureOf(mail), u"Could not focus Mail before insertion."_s);
    const QStringList attempt = {u"activate 30"_s, u"script activate org.example.Mail"_s,
                                 u"script activate name Mail"_s};
    EXPECT_EQ(desktop->actions(), attempt + attempt + attempt);
    EXPECT_EQ(pasteboard.string(), u"text"_s) << "at hand for the user";
    // 2 s in steps of 40 ms, three times; failed scripts are not waited for.
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>(150, 40ms));
}

TEST_F(TextInsertionServiceTest, ASuccessfulScriptIsWaitedForOneSecond)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    desktop->setScriptsSucceed(true);
    EXPECT_EQ(failureOf(mail), u"Could not focus Mail before insertion."_s);
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>(3 * (50 + 25), 40ms));
    EXPECT_EQ(desktop->actions().filter(u"name"_s), QStringList())
        << "the name is not tried when the identifier worked";
}

TEST_F(TextInsertionServiceTest, AnApplicationThatComesAtTheLastMomentIsSeen)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    clock.whenSlept = [this] {
        if (clock.sleeps.size() == 50)
            desktop->bringToFront(30);
    };
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, MessagesNameTheTargetAsWellAsTheyCan)
{
    EXPECT_EQ(failureOf(TargetApplication{0, u"org.example.x"_s, std::nullopt}),
              u"Could not focus org.example.x before insertion."_s);
    EXPECT_EQ(failureOf(TargetApplication{0, u"org.example.x"_s, u""_s}),
              u"Could not focus  before insertion."_s);
    EXPECT_EQ(failureOf(TargetApplication{0, std::nullopt, std::nullopt}),
              u"Could not focus target application before insertion."_s);
}

TEST_F(TextInsertionServiceTest, ATargetWithNothingToGoByIsNeverActivated)
{
    failureOf(TargetApplication{0, u""_s, u"  "_s});
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST_F(TextInsertionServiceTest, AFrontLostAfterWritingIsWonBack)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(30);
    pasteboard.whenWritten([this] { desktop->bringToFront(31); });
    obey();
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, AFrontLostForGoodLeavesTheTextOnThePasteboard)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(30);
    pasteboard.whenWritten([this] { desktop->setRunning({}); });
    EXPECT_EQ(failureOf(mail), u"Lost focus on Mail before paste."_s);
    EXPECT_EQ(pasteboard.string(), u"text"_s);
    EXPECT_FALSE(desktop->actions().contains(u"paste"_s));
}

TEST_F(TextInsertionServiceTest, HeldModifiersAreWaitedForBeforeTheLastLookAtTheFront)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(30);
    obey();
    desktop->setModifiersHeld(true);
    clock.whenSlept = [this] {
        if (clock.sleeps.size() != 5)
            return;
        desktop->bringToFront(31); // the end of Alt+Tab
        desktop->setModifiersHeld(false);
    };
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"paste"_s}));
    EXPECT_EQ(workspace.frontmostApplication()->processIdentifier, 30);
    EXPECT_EQ(clock.sleeps,
              (std::vector<std::chrono::nanoseconds>{40ms, 40ms, 40ms, 40ms, 40ms, 140ms}));
}

TEST_F(TextInsertionServiceTest, ModifiersThatStayDownAreReleasedAfterASecond)
{
    desktop->setModifiersHeld(true);
    insert(u"hello"_s);
    EXPECT_EQ(desktop->actions(), QStringList{u"paste"_s});
    EXPECT_EQ(clock.now().time_since_epoch(), 1s + 140ms);
}

TEST_F(TextInsertionServiceTest, AModifierThatGoesDownDuringThePauseIsWaitedForToo)
{
    clock.whenSlept = [this] {
        if (clock.sleeps.size() == 1 || clock.sleeps.size() == 3)
            desktop->setModifiersHeld(clock.sleeps.back() == 140ms);
    };
    insert(u"hello"_s);
    EXPECT_EQ(desktop->actions(), QStringList{u"paste"_s});
    EXPECT_EQ(clock.sleeps, (std::vector<std::chrono::nanoseconds>{140ms, 40ms, 40ms, 140ms}));
}

TEST_F(TextInsertionServiceTest, AFrontLostDuringThePauseIsWonBack)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(30);
    obey();
    clock.whenSlept = [this] {
        if (clock.sleeps.size() == 1)
            desktop->bringToFront(31);
    };
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"paste"_s}));
    EXPECT_EQ(workspace.frontmostApplication()->processIdentifier, 30);
}

TEST_F(TextInsertionServiceTest, AFrontThatIsLostDuringEveryPauseIsGivenUp)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s), running(31, u"other"_s)});
    desktop->bringToFront(30);
    obey();
    clock.whenSlept = [this] { desktop->bringToFront(31); };
    EXPECT_EQ(failureOf(mail), u"Lost focus on Mail before paste."_s);
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"activate 30"_s}));
    EXPECT_EQ(pasteboard.string(), u"text"_s);
}

TEST_F(TextInsertionServiceTest, AProgramThatTakesTheKeyboardIsWaitedFor)
{
    desktop->setKeyboardTaken(true);
    clock.whenSlept = [this] { desktop->setKeyboardTaken(clock.now().time_since_epoch() < 5s); };
    insert(u"hello"_s);
    EXPECT_EQ(desktop->actions(), QStringList{u"paste"_s});
}

TEST_F(TextInsertionServiceTest, AProgramThatKeepsTheKeyboardGetsNothing)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    desktop->bringToFront(30);
    desktop->setKeyboardTaken(true);
    EXPECT_EQ(failureOf(mail), u"Lost focus on Mail before paste."_s);
    EXPECT_EQ(failureOf({}), u"Lost focus on target application before paste."_s);
    EXPECT_EQ(desktop->actions(), QStringList());
    EXPECT_EQ(pasteboard.string(), u"text"_s);
}

TEST_F(TextInsertionServiceTest, ACancelEndsTheWaitForTheKeyboard)
{
    std::stop_source stop;
    desktop->setModifiersHeld(true);
    clock.whenSlept = [&] { stop.request_stop(); };
    EXPECT_THROW(insert(u"hello"_s, {}, stop.get_token()), Cancelled);
    EXPECT_EQ(clock.sleeps.size(), 1U);
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST_F(TextInsertionServiceTest, ASlowStarterIsStartedOnceAndWaitedFor)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    desktop->setLaunchedProcess(77);
    desktop->setScriptsSucceed(true);
    clock.whenSlept = [this] {
        if (clock.now().time_since_epoch() != 8s)
            return;
        desktop->setRunning({running(77, u"org.example.Mail"_s)});
        desktop->bringToFront(77);
    };
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(), QStringList({u"open org.example.Mail"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, ASlowStarterWhoseWindowOpensBehindIsActivated)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    desktop->setLaunchedProcess(77);
    obey();
    clock.whenSlept = [this] {
        if (clock.now().time_since_epoch() == 8s)
            desktop->setRunning({running(77, u"org.example.Mail"_s)});
    };
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions(),
              QStringList({u"open org.example.Mail"_s, u"activate 77"_s, u"paste"_s}));
}

TEST_F(TextInsertionServiceTest, AnApplicationThatNeverShowsAWindowIsStartedOnce)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    desktop->setLaunchedProcess(77);
    EXPECT_EQ(failureOf(mail), u"Could not focus Mail before insertion."_s);
    EXPECT_EQ(desktop->actions(), QStringList({u"open org.example.Mail"_s}));
    EXPECT_EQ(clock.now().time_since_epoch(), 9s);
    EXPECT_EQ(pasteboard.string(), u"text"_s);
}

TEST_F(TextInsertionServiceTest, AnApplicationThatEndsAtOnceIsLeftToTheScriptAndNotStartedAgain)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    EXPECT_EQ(failureOf(mail), u"Could not focus Mail before insertion."_s);
    const QStringList scripts = {u"script activate org.example.Mail"_s,
                                 u"script activate name Mail"_s};
    EXPECT_EQ(desktop->actions(),
              QStringList{u"open org.example.Mail"_s} + scripts + scripts + scripts);
}

TEST_F(TextInsertionServiceTest, AnApplicationThatEndedBeforeThePasteIsStartedOnceOverall)
{
    desktop->setInstalled({u"org.example.Mail"_s});
    desktop->setHook([this](const QString &action) {
        if (!action.startsWith(u"open "_s))
            return;
        desktop->setRunning({running(77, u"org.example.Mail"_s)});
        desktop->bringToFront(77);
    });
    pasteboard.whenWritten([this] { desktop->setRunning({}); });
    EXPECT_EQ(failureOf(mail), u"Lost focus on Mail before paste."_s);
    EXPECT_EQ(desktop->actions().filter(u"open"_s).size(), 1);
}

TEST_F(TextInsertionServiceTest, ACancelDuringThePauseSendsNoKeystroke)
{
    std::stop_source stop;
    clock.whenSlept = [&] { stop.request_stop(); };
    EXPECT_THROW(insert(u"hello"_s, {}, stop.get_token()), Cancelled);
    EXPECT_EQ(desktop->actions(), QStringList());
    EXPECT_EQ(pasteboard.string(), u"hello"_s);
}

TEST_F(TextInsertionServiceTest, ACancelDuringTheFocusWaitDoesNotEndTheWait)
{
    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    std::stop_source stop;
    clock.whenSlept = [&] {
        stop.request_stop();
        if (clock.sleeps.size() == 10)
            desktop->bringToFront(30);
    };
    EXPECT_THROW(insert(u"hello"_s, mail, stop.get_token()), Cancelled);
    EXPECT_EQ(clock.sleeps.size(), 11U);
    EXPECT_EQ(pasteboard.string(), u"hello"_s);
}

TEST_F(TextInsertionServiceTest, AnUnwritablePasteboardPassesThePlatformsErrorThrough)
{
    pasteboard.failWriting(u"no clipboard"_s);
    EXPECT_EQ(failureOf(std::nullopt), u"no clipboard"_s);
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST_F(TextInsertionServiceTest, WithoutKeyEventsTheScriptPastes)
{
    desktop->setKeyEventsAvailable(false);
    desktop->setScriptsSucceed(true);
    insert(u"hello"_s);
    EXPECT_EQ(desktop->actions(), QStringList{u"script paste"_s});

    desktop->setRunning({running(30, u"org.example.Mail"_s)});
    desktop->bringToFront(30);
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions().last(), u"script paste org.example.Mail"_s);
}

TEST_F(TextInsertionServiceTest, AnEmptyIdentifierIsNoneToThePasteScript)
{
    desktop->setKeyEventsAvailable(false);
    desktop->setScriptsSucceed(true);
    desktop->setRunning({running(30, u""_s, u"Mail"_s)});
    desktop->bringToFront(30);
    insert(u"hello"_s, TargetApplication{30, u""_s, u"Mail"_s});
    EXPECT_EQ(desktop->actions(), QStringList{u"script paste"_s});
}

TEST_F(TextInsertionServiceTest, AFailedPasteScriptIsReportedByItsRunnersName)
{
    desktop->setKeyEventsAvailable(false);
    EXPECT_EQ(failureOf(std::nullopt), u"Paste fallback failed via fakescript."_s);
    EXPECT_EQ(pasteboard.string(), u"text"_s);

    desktop->setScriptStartFailure(u"no such file"_s);
    EXPECT_EQ(failureOf(std::nullopt), u"no such file"_s);
}

TEST_F(TextInsertionServiceTest, ATerminatedProcessIsReplacedByARunningInstance)
{
    RunningApplication old = running(30, u"org.example.Mail"_s);
    old.isTerminated = true;
    RunningApplication helper = running(40, u"org.example.Mail"_s);
    helper.isInTaskBar = false;
    desktop->setRunning({old, helper, running(41, u"org.example.Mail"_s)});
    obey();
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions().first(), u"activate 41"_s) << "the one with ordinary windows";

    desktop->setRunning({old, helper});
    insert(u"hello"_s, mail);
    EXPECT_EQ(desktop->actions().at(2), u"activate 40"_s) << "else the first";
}

TEST_F(TextInsertionServiceTest, AnotherApplicationOfTheSameProcessIsNotTheTarget)
{
    RunningApplication writer = running(30, u"writer"_s);
    RunningApplication calc = running(30, u"calc"_s);
    writer.sharesProcess = calc.sharesProcess = true;
    calc.isActive = true;
    desktop->setRunning({calc, writer});
    desktop->setHook([&](const QString &action) {
        if (action == u"activate 30"_s) {
            calc.isActive = false;
            writer.isActive = true;
            desktop->setRunning({calc, writer});
        }
    });
    // As it was when the process showed nothing else.
    insert(u"hello"_s, TargetApplication{30, u"writer"_s, {}});
    EXPECT_EQ(desktop->actions(), QStringList({u"activate 30"_s, u"paste"_s}));
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, u"writer"_s);
}

TEST_F(TextInsertionServiceTest, AnIdentifierThatIsEmptyNamesNoInstance)
{
    desktop->setRunning({running(40, u""_s)});
    failureOf(TargetApplication{0, u""_s, std::nullopt});
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST(IsSameApplication, GoesByProcessThenIdentifierThenName)
{
    const RunningApplication front = running(30, u"org.example.Notes"_s, u" Notes Beta "_s);
    EXPECT_TRUE(isSameApplication({30, {}, {}}, front));
    EXPECT_FALSE(isSameApplication({31, {}, {}}, front));
    EXPECT_TRUE(isSameApplication({31, u"org.example.Notes"_s, {}}, front));
    EXPECT_FALSE(isSameApplication({31, u"org.example.notes"_s, {}}, front)) << "case counts";
    EXPECT_TRUE(isSameApplication({0, u""_s, u"notes"_s}, front));
    EXPECT_TRUE(isSameApplication({0, {}, u"My Notes Beta 2\n"_s}, front));
    EXPECT_FALSE(isSameApplication({0, {}, u"Mail"_s}, front));
    EXPECT_FALSE(isSameApplication({0, {}, u"  "_s}, front));
    EXPECT_FALSE(isSameApplication({0, {}, {}}, front));
}

TEST(IsSameApplication, BlanksAroundANameDoNotCount)
{
    const RunningApplication front = running(30, u"org.example.Notes"_s, u"\t Notes\n"_s);
    EXPECT_TRUE(isSameApplication({0, {}, u"Notes Beta"_s}, front));
    EXPECT_TRUE(isSameApplication({0, {}, u" Notes  "_s}, running(30, {}, u"Notes"_s)));
    EXPECT_FALSE(isSameApplication({0, {}, u"Notes"_s}, running(30, {}, u"  "_s)))
        << "a blank name is in no other";
}

TEST(IsSameApplication, TheNameDecidesAlsoBetweenDifferentIdentifiers)
{
    const RunningApplication front = running(30, u"org.example.Notes"_s, u"Notes"_s);
    EXPECT_TRUE(isSameApplication({31, u"org.example.NotesBeta"_s, u"Notes"_s}, front));
    EXPECT_FALSE(isSameApplication({31, u"org.example.NotesBeta"_s, u"Mail"_s}, front));
    EXPECT_FALSE(isSameApplication({31, u"org.example.NotesBeta"_s, {}}, front));
}

TEST(IsSameApplication, ASharedProcessTellsNothing)
{
    RunningApplication front = running(30, u"calc"_s, u"Calc"_s);
    front.sharesProcess = true;
    EXPECT_FALSE(isSameApplication({30, u"writer"_s, u"Writer"_s}, front));
    EXPECT_FALSE(isSameApplication({30, {}, {}}, front));
    EXPECT_TRUE(isSameApplication({0, u"calc"_s, {}}, front));
    EXPECT_TRUE(isSameApplication({0, {}, u"Calc"_s}, front));
}

TEST(IsSameApplication, UnknownProcessesAndNamesMatchNothing)
{
    RunningApplication front;
    EXPECT_FALSE(isSameApplication({0, {}, {}}, front));
    EXPECT_FALSE(isSameApplication({0, u""_s, u"x"_s}, front));
    front.bundleIdentifier = u""_s;
    EXPECT_FALSE(isSameApplication({-1, u""_s, u""_s}, front));
}

} // namespace
} // namespace kestrova
