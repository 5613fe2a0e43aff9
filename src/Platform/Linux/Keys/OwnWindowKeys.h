#pragma once

#include "Platform/Keys/KeyEventHandlers.h"
#include "Platform/Linux/Keys/PostedKeys.h"

#include <QObject>

#include <functional>
#include <memory>

class QKeyEvent;

namespace kestrova {

/// Reports the keys that Qt gives our own windows, before a window or one of its shortcuts gets
/// them. Keys that an input method keeps to itself never come to Qt's windows; keys without a
/// native scan code, which are no keys of a keyboard, are not reported. Installs itself in the
/// QCoreApplication. Main thread.
class OwnWindowKeys final : public QObject
{
public:
    /// What the key did, by QKeyEvent's type, native scan code and native modifiers; none for one
    /// that has no meaning here. Repeats need not be told apart.
    using Translate = std::function<std::optional<KeyEvent>(const QKeyEvent &key)>;

    /// The posted keys and the handlers outlive this.
    OwnWindowKeys(PostedKeys &postedKeys, const KeyEventHandlers &handlers, Translate translate);

    /// True when a handler has taken the key.
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    struct Seen;

    bool isTaken(const QKeyEvent &key);
    bool report(const QKeyEvent &key, bool isRepeat);

    PostedKeys &m_postedKeys;
    const KeyEventHandlers &m_handlers;
    const Translate m_translate;
    std::shared_ptr<Seen> m_last;
};

} // namespace kestrova
