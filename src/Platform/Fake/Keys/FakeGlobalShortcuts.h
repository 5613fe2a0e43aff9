#pragma once

#include "Platform/Keys/GlobalShortcuts.h"

#include <map>

namespace kestrova {

/// A desktop that binds shortcuts when the test says so. Main thread.
class FakeGlobalShortcuts final : public GlobalShortcuts
{
public:
    void bind(const QList<NamedShortcut> &shortcuts) override;
    Binding binding(const QString &id) const override;
    QString triggerText(const QString &id) const override;
    bool canConfigure() const override { return m_canConfigure; }
    void configure() override { ++m_configurations; }
    std::unique_ptr<Observation> observe(Handlers handlers) override;

    /// The user agrees to all that is pending: the triggers are "keys of ID".
    void accept();
    /// The user refuses all that is pending.
    void refuse();
    /// The user gives one of the shortcuts other keys; none when the text is empty.
    void change(const QString &id, const QString &triggerText);
    /// Nothing happens unless it is bound.
    void press(const QString &id, const QByteArray &activationToken = {});
    void setCanConfigure(bool can) { m_canConfigure = can; }

    /// What bind() was called with, oldest first.
    const QList<QList<NamedShortcut>> &requests() const { return m_requests; }
    int configurations() const { return m_configurations; }

private:
    struct State
    {
        Binding binding = Binding::pending;
        QString triggerText;
    };

    void answer(Binding binding);
    void announceChange();

    QList<QList<NamedShortcut>> m_requests;
    std::map<QString, State> m_states;
    Observers<Handlers> m_observers;
    bool m_canConfigure = true;
    int m_configurations = 0;
};

} // namespace kestrova
