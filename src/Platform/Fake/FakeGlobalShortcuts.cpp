#include "Platform/Fake/FakeGlobalShortcuts.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

class SharedObservation final : public GlobalShortcuts::Observation
{
public:
    explicit SharedObservation(std::shared_ptr<const GlobalShortcuts::Handlers> handlers)
        : m_handlers(std::move(handlers))
    {
    }

private:
    const std::shared_ptr<const GlobalShortcuts::Handlers> m_handlers;
};

} // namespace

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

std::unique_ptr<GlobalShortcuts::Observation> FakeGlobalShortcuts::observe(Handlers handlers)
{
    const auto shared = std::make_shared<const Handlers>(std::move(handlers));
    m_observers.push_back(shared);
    return std::make_unique<SharedObservation>(shared);
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
    call([](const Handlers &handlers) { handlers.changed(); });
}

void FakeGlobalShortcuts::change(const QString &id, const QString &triggerText)
{
    m_states[id] = {triggerText.isEmpty() ? Binding::refused : Binding::bound, triggerText};
    call([](const Handlers &handlers) { handlers.changed(); });
}

void FakeGlobalShortcuts::press(const QString &id, const QByteArray &activationToken)
{
    if (binding(id) == Binding::bound)
        call([&](const Handlers &handlers) { handlers.activated(id, activationToken); });
}

void FakeGlobalShortcuts::call(const std::function<void(const Handlers &)> &handler)
{
    // An observer may end observations, its own too: of a copy, those that still live.
    for (const auto &observer : std::vector(m_observers)) {
        if (const auto handlers = observer.lock())
            handler(*handlers);
    }
}

} // namespace kestrova
