#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakePasteboard.h"
#include "Services/Dictation/TextInsertionService.h"
#include "support/ManualClock.h"
#include "support/ManualExecutors.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Outcome = DeliveryOutcome;

constexpr qint32 editorProcess = 30;
constexpr qint32 clipboardManager = 40;

/// A main thread that is free until the test says that its work waits.
class MainThread final : public MainExecutor
{
public:
    void post(std::function<void()> work) override
    {
        if (isBusy)
            waiting.post(std::move(work));
        else
            work();
    }

    bool isBusy = false;
    ManualExecutor waiting;
};

/// An editor is in front, and a paste keystroke makes somebody ask for the text, or nobody.
class TextInsertionDeliveryTest : public testing::Test
{
protected:
    TextInsertionDeliveryTest()
    {
        RunningApplication application;
        application.processIdentifier = editorProcess;
        application.bundleIdentifier = editor.bundleIdentifier;
        desktop->setRunning({application});
        desktop->bringToFront(editorProcess);
        service->observeLateRequests([this](quint64 number) { late.append(number); });
    }

    /// Who asks for the text at the keystroke.
    void setReaders(const QList<qint32> &processes)
    {
        desktop->setHook([this, processes](const QString &action) {
            if (action != u"paste"_s)
                return;
            for (const qint32 process : processes)
                pasteboard.read(process);
        });
    }
    Delivery insert() { return service->insert(u"hello"_s, editor, {}); }
    /// Does what the main thread was asked to do by this.
    void later(const std::function<void()> &happening)
    {
        main.isBusy = true;
        happening();
        main.isBusy = false;
        main.waiting.runAll();
    }
    std::chrono::nanoseconds waited() const
    {
        std::chrono::nanoseconds sum{};
        for (const auto sleep : clock.sleeps)
            sum += sleep;
        return sum - timings.pauseBeforePaste;
    }

    const TargetApplication editor{editorProcess, u"org.example.Editor"_s, u"Editor"_s};
    std::shared_ptr<FakeDesktop> desktop = std::make_shared<FakeDesktop>();
    FakeWorkspace workspace{desktop};
    FakeKeyEventPosting keyEvents{desktop};
    FakeScriptRunning scripts{desktop};
    FakePasteboard pasteboard;
    MainThread main;
    ManualClock clock;
    const Timings timings;
    std::unique_ptr<TextInsertionService> service = std::make_unique<TextInsertionService>(
        workspace, pasteboard, keyEvents, scripts, main, clock);
    QList<quint64> late;
};

TEST_F(TextInsertionDeliveryTest, AnApplicationThatAsksIsNotWaitedFor)
{
    setReaders({editorProcess});
    EXPECT_EQ(insert().outcome, Outcome::requested);
    EXPECT_EQ(waited(), 0ns);
}

TEST_F(TextInsertionDeliveryTest, AProgramThatBelongsToTheApplicationMayAskForIt)
{
    desktop->addHelper(31, editorProcess);
    setReaders({31});
    EXPECT_EQ(insert().outcome, Outcome::requested);
}

TEST_F(TextInsertionDeliveryTest, ASlowApplicationIsGivenTime)
{
    clock.whenSlept = [this] {
        if (waited() == 400ms)
            pasteboard.read(editorProcess);
    };
    EXPECT_EQ(insert().outcome, Outcome::requested);
    EXPECT_EQ(waited(), 400ms);
}

TEST_F(TextInsertionDeliveryTest, WhereNobodyAsksTheTextIsLeftOnTheClipboard)
{
    EXPECT_EQ(insert().outcome, Outcome::leftOnClipboard);
    EXPECT_EQ(waited(), timings.requestWait);
    EXPECT_EQ(pasteboard.string(), u"hello"_s);
}

TEST_F(TextInsertionDeliveryTest, WhereTheFrontIsUnknownWhoeverAsksDecidesNothing)
{
    desktop->tellNothing();
    setReaders({editorProcess});
    EXPECT_EQ(insert().outcome, Outcome::unknown);
    EXPECT_EQ(waited(), 0ns) << "nothing more can become known";
    setReaders({});
    EXPECT_EQ(insert().outcome, Outcome::leftOnClipboard);
}

TEST_F(TextInsertionDeliveryTest, AClipboardManagerIsNotTheApplication)
{
    pasteboard.whenWritten([this] { pasteboard.read(clipboardManager); });
    EXPECT_EQ(insert().outcome, Outcome::leftOnClipboard);
    setReaders({clipboardManager});
    EXPECT_EQ(insert().outcome, Outcome::unknown) << "it asked after the keystroke too";
}

TEST_F(TextInsertionDeliveryTest, AManagerOfTheSameProgramIsKnownByItsEarlierRequest)
{
    desktop->addHelper(31, editorProcess);
    pasteboard.whenWritten([this] { pasteboard.read(31); });
    setReaders({31});
    EXPECT_EQ(insert().outcome, Outcome::unknown);
    pasteboard.whenWritten([this] { pasteboard.read(editorProcess); });
    setReaders({editorProcess});
    EXPECT_EQ(insert().outcome, Outcome::requested) << "the application itself may ask twice";
}

TEST_F(TextInsertionDeliveryTest, AnApplicationThatAskedOnlyBeforeTheKeystrokeIsUncertain)
{
    pasteboard.whenWritten([this] { pasteboard.read(editorProcess); });
    EXPECT_EQ(insert().outcome, Outcome::unknown);
}

TEST_F(TextInsertionDeliveryTest, WithNoKnownApplicationInFrontARequestIsNobodys)
{
    desktop->bringToFront(0);
    const auto insertAnywhere = [this] { return service->insert(u"hello"_s, {}, {}).outcome; };
    EXPECT_EQ(insertAnywhere(), Outcome::leftOnClipboard);
    setReaders({0});
    EXPECT_EQ(insertAnywhere(), Outcome::unknown);
    setReaders({editorProcess});
    EXPECT_EQ(insertAnywhere(), Outcome::unknown);
}

TEST_F(TextInsertionDeliveryTest, AClipboardThatAnotherProgramTakesIsTold)
{
    pasteboard.whenWritten([this] { pasteboard.put(u"theirs"_s); });
    EXPECT_EQ(insert().outcome, Outcome::replaced);
    setReaders({editorProcess});
    EXPECT_EQ(insert().outcome, Outcome::requested) << "it came in between";
}

TEST_F(TextInsertionDeliveryTest, ACancelEndsTheWaitAndTheInsertionCounts)
{
    std::stop_source stop;
    clock.whenSlept = [&] {
        if (clock.sleeps.size() > 1)
            stop.request_stop();
    };
    EXPECT_EQ(service->insert(u"hello"_s, editor, stop.get_token()).outcome,
              Outcome::leftOnClipboard);
    EXPECT_EQ(waited(), timings.requestPollInterval);
}

TEST_F(TextInsertionDeliveryTest, ALateRequestIsToldOnceWithTheNumberOfItsDelivery)
{
    const quint64 first = insert().number;
    EXPECT_NE(insert().number, first);
    later([this] { pasteboard.read(clipboardManager); });
    EXPECT_EQ(late, QList<quint64>());
    later([this] { pasteboard.read(editorProcess); });
    later([this] { pasteboard.read(editorProcess); });
    EXPECT_EQ(late, QList<quint64>{first + 1});
}

TEST_F(TextInsertionDeliveryTest, NothingIsFollowedBeyondTheServicesEnd)
{
    insert();
    later([this] {
        pasteboard.read(editorProcess);
        service.reset();
        pasteboard.read(editorProcess);
    });
    EXPECT_EQ(late, QList<quint64>());
}

} // namespace
} // namespace kestrova
