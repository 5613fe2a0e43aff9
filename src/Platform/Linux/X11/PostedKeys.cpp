#include "Platform/Linux/X11/PostedKeys.h"

namespace kestrova {

void PostedKeys::announce(const std::vector<quint8> &keyCodes)
{
    const std::lock_guard lock(m_mutex);
    m_expected.assign(keyCodes.rbegin(), keyCodes.rend());
}

bool PostedKeys::take(quint8 keyCode)
{
    const std::lock_guard lock(m_mutex);
    if (m_expected.empty() || m_expected.back() != keyCode)
        return false;
    m_expected.pop_back();
    return true;
}

} // namespace kestrova
