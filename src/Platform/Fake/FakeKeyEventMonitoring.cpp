#include "Platform/Fake/FakeKeyEventMonitoring.h"

namespace kestrova {

std::unique_ptr<KeyEventMonitoring::Monitor>
FakeKeyEventMonitoring::addGlobalMonitor(GlobalHandler handler)
{
    return m_isGlobalAvailable ? m_global.addObserver(std::move(handler)) : nullptr;
}

std::unique_ptr<KeyEventMonitoring::Monitor>
FakeKeyEventMonitoring::addLocalMonitor(LocalHandler handler)
{
    return m_isLocalAvailable ? m_local.add(std::move(handler)) : nullptr;
}

} // namespace kestrova
