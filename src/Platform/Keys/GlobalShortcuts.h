#pragma once

#include "Models/Settings/HotkeyShortcut.h"
#include "Platform/Observation/Observers.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <memory>

namespace kestrova {

/// A shortcut as the desktop is asked for it.
struct NamedShortcut
{
    QString id;          ///< what it is known by, also to a later run of the program
    QString description; ///< what the desktop shows the user
    HotkeyShortcut preferredTrigger;

    bool operator==(const NamedShortcut &) const = default;
};

/// Shortcuts that the desktop binds for the program by name. Which keys they are is the user's
/// decision, who may change it or refuse in a dialog of the desktop's at any time. Main thread, on
/// which the handlers are called too.
class GlobalShortcuts
{
public:
    enum class Binding {
        none,    ///< never asked for
        pending, ///< the desktop has not answered, or its user has not
        bound,
        refused, ///< or the user has taken it away since
    };

    struct Handlers
    {
        /// The shortcut went down. The token lets a window come to the front; empty where the
        /// desktop gives none.
        std::function<void(const QString &id, const QByteArray &activationToken)> activated;
        /// What binding() or triggerText() says has become something else.
        std::function<void()> changed;
    };
    virtual ~GlobalShortcuts() = default;

    /// Asks for these and no others, in place of all earlier ones. The answer comes later, and may
    /// take as long as the user takes. Nothing fails but by Binding::refused.
    virtual void bind(const QList<NamedShortcut> &shortcuts) = 0;
    virtual Binding binding(const QString &id) const = 0;
    /// The keys of a bound shortcut in the desktop's own words, to be shown and never understood.
    /// Empty when it has none or the desktop does not tell.
    virtual QString triggerText(const QString &id) const = 0;

    /// Whether the desktop has a dialog in which the user changes the keys.
    virtual bool canConfigure() const = 0;
    /// Asks for that dialog, where there is one.
    virtual void configure() = 0;

    /// Until the result ends, which may happen inside one of its own handlers.
    [[nodiscard]] virtual std::unique_ptr<Observation> observe(Handlers handlers) = 0;
};

} // namespace kestrova
