#include "Platform/Keys/KeyEventHandlers.h"

#include <algorithm>

namespace kestrova {

namespace {

struct HandlerMonitor final : KeyEventMonitoring::Monitor
{
    explicit HandlerMonitor(std::shared_ptr<const KeyEventHandlers::Handler> owned)
        : handler(std::move(owned))
    {
    }

    const std::shared_ptr<const KeyEventHandlers::Handler> handler;
};

} // namespace

std::unique_ptr<KeyEventMonitoring::Monitor> KeyEventHandlers::add(KeyEvent::Types types,
                                                                   Handler handler)
{
    std::erase_if(m_handlers, [](const auto &known) { return known.expired(); });
    auto shared = std::make_shared<const Handler>(
        [types, handler = std::move(handler)](const KeyEvent &event) {
            return types.testFlag(event.type) && handler(event);
        });
    m_handlers.push_back(shared);
    return std::make_unique<HandlerMonitor>(std::move(shared));
}

std::unique_ptr<KeyEventMonitoring::Monitor>
KeyEventHandlers::addObserver(KeyEvent::Types types, KeyEventMonitoring::GlobalHandler handler)
{
    return add(types, [handler = std::move(handler)](const KeyEvent &event) {
        handler(event);
        return false;
    });
}

int KeyEventHandlers::count() const
{
    return int(std::count_if(m_handlers.begin(), m_handlers.end(),
                             [](const auto &known) { return !known.expired(); }));
}

bool KeyEventHandlers::call(const KeyEvent &event) const
{
    const auto handlers = m_handlers; // a handler may add others, or end this object
    for (const auto &known : handlers) {
        const auto handler = known.lock();
        if (handler && (*handler)(event))
            return true;
    }
    return false;
}

} // namespace kestrova
