#include "Platform/KeyDownHandlers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using MonitorPointer = std::unique_ptr<KeyEventMonitoring::Monitor>;

class KeyDownHandlersTest : public testing::Test
{
protected:
    MonitorPointer add(const QString &name, bool takesEvents = false)
    {
        return m_handlers.add([this, name, takesEvents](const KeyDownEvent &) {
            m_called.append(name);
            return takesEvents;
        });
    }

    KeyDownHandlers m_handlers;
    QStringList m_called;
};

TEST_F(KeyDownHandlersTest, TheOldestIsCalledFirstAndMayKeepTheEventFromTheOthers)
{
    const MonitorPointer first = add(u"first"_s);
    const MonitorPointer second = add(u"second"_s, true);
    const MonitorPointer third = add(u"third"_s);
    EXPECT_TRUE(m_handlers.call({}));
    EXPECT_EQ(m_called, (QStringList{u"first"_s, u"second"_s}));
}

TEST_F(KeyDownHandlersTest, AnObserverKeepsNothing)
{
    const MonitorPointer monitor =
        m_handlers.addObserver([this](const KeyDownEvent &) { m_called.append(u"observer"_s); });
    EXPECT_FALSE(m_handlers.call({}));
    EXPECT_EQ(m_called, QStringList{u"observer"_s});
}

TEST_F(KeyDownHandlersTest, AHandlerMayEndItsOwnAndLaterMonitors)
{
    MonitorPointer first;
    MonitorPointer second;
    first = m_handlers.addObserver([&](const KeyDownEvent &) {
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

TEST_F(KeyDownHandlersTest, AHandlerThatAHandlerAddsGetsTheNextEvent)
{
    std::vector<MonitorPointer> added;
    const MonitorPointer adding =
        m_handlers.addObserver([&](const KeyDownEvent &) { added.push_back(add(u"added"_s)); });
    m_handlers.call({});
    EXPECT_EQ(m_called, QStringList());
    m_handlers.call({});
    EXPECT_EQ(m_called, QStringList{u"added"_s});
    EXPECT_EQ(m_handlers.count(), 3);
}

TEST_F(KeyDownHandlersTest, AHandlerLastsAsLongAsItsMonitorWhichMayOutliveTheList)
{
    auto handlers = std::make_unique<KeyDownHandlers>();
    const auto owned = std::make_shared<int>();
    MonitorPointer monitor = handlers->add([owned](const KeyDownEvent &) { return true; });
    handlers.reset();
    EXPECT_EQ(owned.use_count(), 2);
    monitor.reset();
    EXPECT_EQ(owned.use_count(), 1);
}

} // namespace
} // namespace kestrova
