#include "Platform/Keys/KeyEventHandlers.h"

namespace kestrova {

std::unique_ptr<KeyEventMonitoring::Monitor> KeyEventHandlers::add(KeyEvent::Types types,
                                                                   Handler handler)
{
    return m_handlers.add([types, handler = std::move(handler)](const KeyEvent &event) {
        return types.testFlag(event.type) && handler(event);
    });
}

std::unique_ptr<KeyEventMonitoring::Monitor>
KeyEventHandlers::addObserver(KeyEvent::Types types, KeyEventMonitoring::GlobalHandler handler)
{
    return add(types, [handler = std::move(handler)](const KeyEvent &event) {
        handler(event);
        return false;
    });
}

bool KeyEventHandlers::call(const KeyEvent &event) const
{
    return m_handlers.anyOf([&event](const Handler &handler) { return handler(event); });
}

} // namespace kestrova
