#include "Platform/Fake/Keys/FakeKeyEventMonitoring.h"

namespace kestrova {

namespace {

struct Grab final : KeyEventMonitoring::Monitor
{
    std::shared_ptr<const QList<HotkeyShortcut>> shortcuts;
};

} // namespace

std::unique_ptr<KeyEventMonitoring::Monitor>
FakeKeyEventMonitoring::addGlobalMonitor(KeyEvent::Types types, GlobalHandler handler)
{
    ++m_requestCount;
    return m_isGlobalAvailable ? m_global.addObserver(types, std::move(handler)) : nullptr;
}

std::unique_ptr<KeyEventMonitoring::Monitor>
FakeKeyEventMonitoring::addLocalMonitor(KeyEvent::Types types, LocalHandler handler)
{
    ++m_requestCount;
    return m_isLocalAvailable ? m_local.add(types, std::move(handler)) : nullptr;
}

std::unique_ptr<KeyEventMonitoring::Monitor>
FakeKeyEventMonitoring::grab(const QList<HotkeyShortcut> &shortcuts)
{
    ++m_requestCount;
    auto grabbing = std::make_unique<Grab>();
    grabbing->shortcuts = std::make_shared<const QList<HotkeyShortcut>>(shortcuts);
    m_grabbed.push_back(grabbing->shortcuts);
    return grabbing;
}

bool FakeKeyEventMonitoring::canType(const HotkeyShortcut &shortcut)
{
    return (shortcut.modifiers & m_missingModifiers) == 0;
}

void FakeKeyEventMonitoring::setMissingModifiers(quint32 modifiers)
{
    m_missingModifiers = modifiers;
    m_global.call({.type = KeyEvent::keyboardChanged});
}

QList<HotkeyShortcut> FakeKeyEventMonitoring::grabbed() const
{
    QList<HotkeyShortcut> all;
    for (const auto &known : m_grabbed) {
        if (const auto shortcuts = known.lock())
            all += *shortcuts;
    }
    return all;
}

} // namespace kestrova
