#include "Views/Tray/LazyWindows.h"

#include "Models/ReadableError.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

class RecordingWindows final : public Windows
{
public:
    explicit RecordingWindows(QStringList &calls) : m_calls(calls) {}

    bool open(const QString &identifier) override
    {
        m_calls.append(u"open "_s + identifier);
        Q_EMIT shown(identifier);
        if (identifier == u"attic"_s)
            Q_EMIT failed(u"locked"_s);
        return identifier == u"settings"_s;
    }
    bool close(const QString &identifier) override
    {
        m_calls.append(u"close "_s + identifier);
        return identifier == u"settings"_s;
    }
    void togglePopover() override { m_calls.append(u"toggle"_s); }
    void showPopoverQuietly() override { m_calls.append(u"show quietly"_s); }

private:
    QStringList &m_calls;
};

class LazyWindowsTest : public testing::Test
{
protected:
    QStringList calls;
    int loads = 0;
    bool isMissing = false;
    LazyWindows windows{[this] {
        ++loads;
        if (isMissing)
            throw PlatformError(u"missing"_s);
        return std::make_unique<RecordingWindows>(calls);
    }};
};

TEST_F(LazyWindowsTest, AreNotLoadedBeforeTheyAreWanted)
{
    EXPECT_EQ(loads, 0);
}

TEST_F(LazyWindowsTest, AreLoadedOnceAndDoWhatIsAsked)
{
    windows.togglePopover();
    windows.showPopoverQuietly();
    EXPECT_TRUE(windows.open(u"settings"_s));
    EXPECT_FALSE(windows.open(u"attic"_s));
    EXPECT_TRUE(windows.close(u"settings"_s));
    EXPECT_EQ(calls, (QStringList{u"toggle"_s, u"show quietly"_s, u"open settings"_s,
                                  u"open attic"_s, u"close settings"_s}));
    EXPECT_EQ(loads, 1);
}

TEST_F(LazyWindowsTest, ThatCannotBeLoadedSayWhyAndAreTriedAnew)
{
    QStringList reasons;
    QObject::connect(&windows, &Windows::failed,
                     [&](const QString &reason) { reasons.append(reason); });
    isMissing = true;
    EXPECT_TRUE(windows.open(u"settings"_s));
    EXPECT_TRUE(windows.close(u"settings"_s));
    windows.togglePopover();
    EXPECT_EQ(reasons, (QStringList{u"missing"_s, u"missing"_s, u"missing"_s}));
    isMissing = false;
    EXPECT_TRUE(windows.open(u"settings"_s));
    EXPECT_EQ(calls, QStringList{u"open settings"_s});
    EXPECT_EQ(loads, 4);
}

TEST_F(LazyWindowsTest, TellWhatIsShown)
{
    QStringList shown;
    QObject::connect(&windows, &Windows::shown,
                     [&](const QString &identifier) { shown.append(identifier); });
    windows.open(u"settings"_s);
    EXPECT_EQ(shown, QStringList{u"settings"_s});
}

TEST_F(LazyWindowsTest, TellWhatCannotBeShown)
{
    QStringList reasons;
    QObject::connect(&windows, &Windows::failed,
                     [&](const QString &reason) { reasons.append(reason); });
    windows.open(u"attic"_s);
    EXPECT_EQ(reasons, QStringList{u"locked"_s});
}

} // namespace
} // namespace kestrova
