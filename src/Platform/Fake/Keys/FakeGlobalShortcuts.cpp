#include "Platform/Fake/Keys/FakeGlobalShortcuts.h"

namespace kestrova {

using namespace Qt::StringLiterals;

void FakeGlobalShortcuts::bind(const QList<NamedShortcut> &shortcuts)
{
    m_requests.append(shortcuts);
    m_states.clear();
    for (const NamedShortcut &shortcut : shortcuts)
        m_states[shortcut.id] = {};
}

GlobalShortcuts::Binding FakeGlobalShortcuts::binding(const QString &id) const
{
    const auto state = m_states.find(id);
    return state == m_states.end() ? Binding::none : state->second.binding;
}

QString FakeGlobalShortcuts::triggerText(const QString &id) const
{
    const auto state = m_states.find(id);
    return state == m_states.end() ? QString() : state->second.triggerText;
}

std::unique_ptr<Observation> FakeGlobalShortcuts::observe(Handlers handlers)
{
    return m_observers.add(std::move(handlers));
}

void FakeGlobalShortcuts::accept()
{
    answer(Binding::bound);
}

void FakeGlobalShortcuts::refuse()
{
    answer(Binding::refused);
}

void FakeGlobalShortcuts::answer(Binding binding)
{
    for (auto &[id, state] : m_states) {
        if (state.binding == Binding::pending)
            state = {binding, binding == Binding::bound ? u"keys of "_s + id : QString()};
    }
    announceChange();
}

void FakeGlobalShortcuts::change(const QString &id, const QString &triggerText)
{
    m_states[id] = {triggerText.isEmpty() ? Binding::refused : Binding::bound, triggerText};
    announceChange();
}

void FakeGlobalShortcuts::press(const QString &id, const QByteArray &activationToken)
{
    if (binding(id) != Binding::bound)
        return;
    m_observers.forEach([&](const Handlers &handlers) { handlers.activated(id, activationToken); });
}

void FakeGlobalShortcuts::announceChange()
{
    m_observers.forEach([](const Handlers &handlers) { handlers.changed(); });
}

} // namespace kestrova
