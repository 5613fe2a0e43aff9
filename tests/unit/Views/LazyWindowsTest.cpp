#include "Views/Tray/LazyWindows.h"

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
        return identifier == u"settings"_s;
    }
    bool close(const QString &identifier) override
    {
        m_calls.append(u"close "_s + identifier);
        return identifier == u"settings"_s;
    }
    void togglePopover() override { m_calls.append(u"toggle"_s); }

private:
    QStringList &m_calls;
};

class LazyWindowsTest : public testing::Test
{
protected:
    QStringList calls;
    int loads = 0;
    LazyWindows windows{[this] {
        ++loads;
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
    EXPECT_TRUE(windows.open(u"settings"_s));
    EXPECT_FALSE(windows.open(u"attic"_s));
    EXPECT_TRUE(windows.close(u"settings"_s));
    EXPECT_EQ(calls,
              (QStringList{u"toggle"_s, u"open settings"_s, u"open attic"_s, u"close settings"_s}));
    EXPECT_EQ(loads, 1);
}

TEST_F(LazyWindowsTest, TellWhatIsShown)
{
    QStringList shown;
    QObject::connect(&windows, &Windows::shown,
                     [&](const QString &identifier) { shown.append(identifier); });
    windows.open(u"settings"_s);
    EXPECT_EQ(shown, QStringList{u"settings"_s});
}

} // namespace
} // namespace kestrova
