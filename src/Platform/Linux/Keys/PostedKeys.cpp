#include "Platform/Linux/Keys/PostedKeys.h"

namespace kestrova {

namespace {

// The window system's clock of 32 bits counts milliseconds and starts anew after 49 days.
bool isLater(quint32 time, quint32 than)
{
    return qint32(time - than) > 0;
}

} // namespace

void PostedKeys::setPreparation(std::function<void()> preparation)
{
    const std::lock_guard lock(m_mutex);
    m_preparation = std::move(preparation);
}

void PostedKeys::prepare()
{
    std::function<void()> preparation;
    {
        const std::lock_guard lock(m_mutex);
        preparation = m_preparation;
    }
    if (preparation)
        preparation();
}

void PostedKeys::announce(const std::vector<Event> &events)
{
    const std::lock_guard lock(m_mutex);
    for (std::vector<Event> &expected : m_expected)
        expected.assign(events.rbegin(), events.rend());
    m_end.reset();
}

void PostedKeys::finish(quint32 time)
{
    const std::lock_guard lock(m_mutex);
    m_end = time;
}

bool PostedKeys::take(Observer observer, const Event &event, quint32 time)
{
    const std::lock_guard lock(m_mutex);
    std::vector<Event> &expected = m_expected[observer];
    if (expected.empty() || expected.back() != event || (m_end && isLater(time, *m_end)))
        return false;
    expected.pop_back();
    return true;
}

} // namespace kestrova
