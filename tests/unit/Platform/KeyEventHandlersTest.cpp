#include "Platform/Keys/KeyEventHandlers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using MonitorPointer = std::unique_ptr<KeyEventMonitoring::Monitor>;

class KeyEventHandlersTest : public testing::Test
{
protected:
    MonitorPointer add(const QString &name, bool takesEvents = false)
    {
        return m_handlers.add(KeyEvent::keyDown, [this, name, takesEvents](const KeyEvent &) {
            m_called.append(name);
            return takesEvents;
        });
    }

    KeyEventHandlers m_handlers;
    QStringList m_called;
};

TEST_F(KeyEventHandlersTest, TheOldestIsCalledFirstAndMayKeepTheEventFromTheOthers)
{
    const MonitorPointer first = add(u"first"_s);
    const MonitorPointer second = add(u"second"_s, true);
    const MonitorPointer third = add(u"third"_s);
    EXPECT_TRUE(m_handlers.call({}));
    EXPECT_EQ(m_called, (QStringList{u"first"_s, u"second"_s}));
}

TEST_F(KeyEventHandlersTest, AnObserverKeepsNothing)
{
    const MonitorPointer monitor = m_handlers.addObserver(
        KeyEvent::keyDown, [this](const KeyEvent &) { m_called.append(u"observer"_s); });
    EXPECT_FALSE(m_handlers.call({}));
    EXPECT_EQ(m_called, QStringList{u"observer"_s});
}

TEST_F(KeyEventHandlersTest, AHandlerGetsTheTypesThatItAskedFor)
{
    const MonitorPointer keyDowns = add(u"key-downs"_s);
    const MonitorPointer both =
        m_handlers.addObserver(KeyEvent::keyDown | KeyEvent::flagsChanged,
                               [this](const KeyEvent &) { m_called.append(u"both"_s); });
    m_handlers.call({.type = KeyEvent::flagsChanged});
    EXPECT_EQ(m_called, QStringList{u"both"_s});
    m_handlers.call({});
    EXPECT_EQ(m_called, (QStringList{u"both"_s, u"key-downs"_s, u"both"_s}));
}

TEST_F(KeyEventHandlersTest, AHandlerMayEndItsOwnAndLaterMonitors)
{
    MonitorPointer first;
    MonitorPointer second;
    first = m_handlers.addObserver(KeyEvent::keyDown, [&](const KeyEvent &) {
        first.reset();
        second.reset();
        m_called.append(u"first"_s);
    });
    second = add(u"second"_s);
    EXPECT_FALSE(m_handlers.call({}));
    EXPECT_FALSE(m_handlers.call({}));
    EXPECT_EQ(m_called, QStringList{u"first"_s});
    EXPECT_EQ(m_handlers.count(), 0);
}

TEST_F(KeyEventHandlersTest, AHandlerThatAHandlerAddsGetsTheNextEvent)
{
    std::vector<MonitorPointer> added;
    const MonitorPointer adding = m_handlers.addObserver(
        KeyEvent::keyDown, [&](const KeyEvent &) { added.push_back(add(u"added"_s)); });
    m_handlers.call({});
    EXPECT_EQ(m_called, QStringList());
    m_handlers.call({});
    EXPECT_EQ(m_called, QStringList{u"added"_s});
    EXPECT_EQ(m_handlers.count(), 3);
}

TEST_F(KeyEventHandlersTest, AHandlerLastsAsLongAsItsMonitorWhichMayOutliveTheList)
{
    auto handlers = std::make_unique<KeyEventHandlers>();
    const auto owned = std::make_shared<int>();
    MonitorPointer monitor =
        handlers->add(KeyEvent::keyDown, [owned](const KeyEvent &) { return true; });
    handlers.reset();
    EXPECT_EQ(owned.use_count(), 2);
    monitor.reset();
    EXPECT_EQ(owned.use_count(), 1);
}

} // namespace
} // namespace kestrova
