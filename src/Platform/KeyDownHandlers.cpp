#include "Platform/KeyDownHandlers.h"

#include <algorithm>

namespace kestrova {

namespace {

struct HandlerMonitor final : KeyEventMonitoring::Monitor
{
    explicit HandlerMonitor(std::shared_ptr<const KeyDownHandlers::Handler> owned)
        : handler(std::move(owned))
    {
    }

    const std::shared_ptr<const KeyDownHandlers::Handler> handler;
};

} // namespace

std::unique_ptr<KeyEventMonitoring::Monitor> KeyDownHandlers::add(Handler handler)
{
    std::erase_if(m_handlers, [](const auto &known) { return known.expired(); });
    auto shared = std::make_shared<const Handler>(std::move(handler));
    m_handlers.push_back(shared);
    return std::make_unique<HandlerMonitor>(std::move(shared));
}

std::unique_ptr<KeyEventMonitoring::Monitor>
KeyDownHandlers::addObserver(KeyEventMonitoring::GlobalHandler handler)
{
    return add([handler = std::move(handler)](const KeyDownEvent &event) {
        handler(event);
        return false;
    });
}

int KeyDownHandlers::count() const
{
    return int(std::count_if(m_handlers.begin(), m_handlers.end(),
                             [](const auto &known) { return !known.expired(); }));
}

bool KeyDownHandlers::call(const KeyDownEvent &event) const
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
