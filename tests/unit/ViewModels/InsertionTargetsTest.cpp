#include "ViewModels/InsertionTargets.h"

#include "Platform/Fake/FakeDesktop.h"
#include "support/QtPrinting.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

RunningApplication application(qint32 processIdentifier,
                               const std::optional<QString> &identifier = {},
                               const std::optional<QString> &name = {})
{
    RunningApplication running;
    running.processIdentifier = processIdentifier;
    running.bundleIdentifier = identifier;
    running.localizedName = name;
    return running;
}

const qint32 ownProcess = qint32(QCoreApplication::applicationPid());
const QString editorIdentifier = u"org.example.Editor"_s;

class PreferredTargetTest : public testing::Test
{
protected:
    PreferredTargetTest()
    {
        desktop->setRunning({application(100, editorIdentifier, u"Editor"_s), application(200),
                             application(ownProcess, u"com.kestrova.app"_s, u"Kestrova"_s)});
    }

    std::shared_ptr<FakeDesktop> desktop = std::make_shared<FakeDesktop>();
    FakeWorkspace workspace{desktop};
};

TEST_F(PreferredTargetTest, TheApplicationInFrontWins)
{
    desktop->bringToFront(100);
    const InsertionTargets targets(workspace);
    EXPECT_EQ(targets.preferred(), (TargetApplication{100, editorIdentifier, u"Editor"_s}));
    desktop->bringToFront(200);
    EXPECT_EQ(targets.preferred(), (TargetApplication{200, {}, {}}));
}

TEST_F(PreferredTargetTest, WhereTheFrontIsUnknownItIsWhateverIsThere)
{
    desktop->bringToFront(100);
    const InsertionTargets targets(workspace);
    desktop->tellNothing();
    EXPECT_FALSE(targets.preferred()) << "the last one that was known may be long gone";
}

TEST_F(PreferredTargetTest, BehindOurOwnWindowItIsTheLastOtherOne)
{
    desktop->bringToFront(100);
    const InsertionTargets targets(workspace);
    desktop->bringToFront(ownProcess);
    EXPECT_EQ(targets.preferred()->processIdentifier, 100) << "in front when we started";
    desktop->bringToFront(200);
    desktop->bringToFront(ownProcess);
    EXPECT_EQ(targets.preferred()->processIdentifier, 200);
    desktop->bringToFront(0);
    EXPECT_EQ(targets.preferred()->processIdentifier, 200) << "on an empty desktop too";
}

TEST_F(PreferredTargetTest, AskingForTheTargetDoesNotRememberIt)
{
    desktop->bringToFront(100);
    const InsertionTargets targets(workspace);
    // In front without an activation that anybody was told of.
    auto unannounced = application(200);
    unannounced.isActive = true;
    desktop->setRunning({unannounced});
    EXPECT_EQ(targets.preferred()->processIdentifier, 200);
    desktop->bringToFront(0);
    EXPECT_EQ(targets.preferred()->processIdentifier, 100);
}

TEST_F(PreferredTargetTest, WithNobodyElseEverInFrontThereIsNone)
{
    const InsertionTargets onEmptyDesktop(workspace);
    EXPECT_FALSE(onEmptyDesktop.preferred());
    desktop->bringToFront(ownProcess);
    const InsertionTargets behindUs(workspace);
    EXPECT_FALSE(onEmptyDesktop.preferred()) << "our own activation does not count";
    EXPECT_FALSE(behindUs.preferred());
}

TEST_F(PreferredTargetTest, WeAreKnownByTheProcessAlone)
{
    desktop->setRunning({application(300, u"com.kestrova.app"_s), application(ownProcess)});
    desktop->bringToFront(300);
    const InsertionTargets targets(workspace);
    desktop->bringToFront(ownProcess);
    EXPECT_EQ(targets.preferred()->processIdentifier, 300);
}

TEST_F(PreferredTargetTest, AnApplicationThatSharesItsProcessIsATargetWithoutAProcess)
{
    auto writer = application(300, u"writer"_s, u"Writer"_s);
    writer.sharesProcess = true;
    desktop->setRunning({writer, application(ownProcess)});
    desktop->bringToFront(300);
    const InsertionTargets targets(workspace);
    const TargetApplication expected{0, u"writer"_s, u"Writer"_s};
    EXPECT_EQ(targets.preferred(), expected);
    desktop->bringToFront(ownProcess);
    EXPECT_EQ(targets.preferred(), expected) << "and we are not one";
}

TEST_F(PreferredTargetTest, AnApplicationWithoutAProcessDoesNotCount)
{
    desktop->bringToFront(100);
    const InsertionTargets targets(workspace);
    desktop->setRunning({application(-1)});
    desktop->bringToFront(-1);
    EXPECT_EQ(targets.preferred()->processIdentifier, 100);
}

TEST_F(PreferredTargetTest, ItStopsFollowingWhenItEnds)
{
    {
        const InsertionTargets targets(workspace);
    }
    desktop->bringToFront(100); // would write to what is gone
    EXPECT_EQ(InsertionTargets(workspace).preferred()->processIdentifier, 100);
}

class HotbarTargetTest : public testing::Test
{
protected:
    std::optional<TargetApplication> target(const std::optional<QString> &identifier,
                                            const std::optional<QString> &appName)
    {
        AppSettings settings = AppSettings::defaults();
        settings.hotbarAssignments[3] = {4, identifier, appName, {}};
        return InsertionTargets(workspace).forHotbarSlot(settings, 4);
    }
    std::optional<TargetApplication> editorTarget(const std::optional<QString> &appName = {})
    {
        return target(editorIdentifier, appName);
    }

    std::shared_ptr<FakeDesktop> desktop = std::make_shared<FakeDesktop>();
    FakeWorkspace workspace{desktop};
};

TEST_F(HotbarTargetTest, WithoutAnIdentifierThereIsNone)
{
    EXPECT_FALSE(target({}, {}));
    EXPECT_FALSE(target(u""_s, {}));
    EXPECT_FALSE(target({}, u"Editor"_s)) << "a name alone is no application";
    EXPECT_FALSE(InsertionTargets(workspace).forHotbarSlot(AppSettings::defaults(), 42));
}

TEST_F(HotbarTargetTest, AnApplicationThatIsNotRunningHasTheProcessZero)
{
    EXPECT_EQ(editorTarget(), (TargetApplication{0, editorIdentifier, {}}));
    EXPECT_EQ(editorTarget(u"Ed"_s), (TargetApplication{0, editorIdentifier, u"Ed"_s}));
}

TEST_F(HotbarTargetTest, TheFirstLivingInstanceIsTaken)
{
    auto terminated = application(101, editorIdentifier, u"Old"_s);
    terminated.isTerminated = true;
    desktop->setRunning({application(99, u"org.example.Other"_s), terminated,
                         application(102, editorIdentifier, u"First"_s),
                         application(103, editorIdentifier, u"Second"_s)});
    EXPECT_EQ(editorTarget(), (TargetApplication{102, editorIdentifier, u"First"_s}));

    desktop->setRunning({terminated});
    EXPECT_EQ(editorTarget(), (TargetApplication{0, editorIdentifier, {}}));
}

TEST_F(HotbarTargetTest, AnInstanceThatSharesItsProcessIsKnownByItsIdentifier)
{
    auto shared = application(102, editorIdentifier, u"Editor"_s);
    shared.sharesProcess = true;
    desktop->setRunning({shared});
    EXPECT_EQ(editorTarget(), (TargetApplication{0, editorIdentifier, u"Editor"_s}));
}

TEST_F(HotbarTargetTest, TheNameIsTheAssignedOneEvenAnEmptyOneThenTheRunningOne)
{
    desktop->setRunning({application(102, editorIdentifier, u"Running"_s)});
    EXPECT_EQ(editorTarget(u"Assigned"_s)->localizedName, u"Assigned"_s);
    EXPECT_EQ(editorTarget(u""_s)->localizedName, u""_s);
    EXPECT_EQ(editorTarget({})->localizedName, u"Running"_s);
    desktop->setRunning({application(102, editorIdentifier)});
    EXPECT_FALSE(editorTarget({})->localizedName);
}

} // namespace
} // namespace kestrova
