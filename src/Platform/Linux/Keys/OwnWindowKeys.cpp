#include "Platform/Linux/Keys/OwnWindowKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace kestrova {

/// One key that went down or up. Qt tells of a press twice, first to ask whether anybody wants it
/// in place of the shortcuts, and of each to the popup in front of a window too.
struct OwnWindowKeys::Seen
{
    explicit Seen(const QKeyEvent &key)
        : type(key.type()), scanCode(key.nativeScanCode()), time(key.timestamp())
    {
    }

    bool isSameKey(const Seen &other) const
    {
        return scanCode == other.scanCode && time == other.time;
    }
    /// Whether the later event tells of this once more.
    bool isRetoldBy(const Seen &later) const
    {
        const bool isAskedBefore = type == QEvent::ShortcutOverride;
        return isSameKey(later) &&
               (type == later.type || (isAskedBefore && later.type == QEvent::KeyPress));
    }

    QEvent::Type type;
    quint32 scanCode;
    quint64 time;
    bool isTaken = false;
};

OwnWindowKeys::OwnWindowKeys(PostedKeys &postedKeys, const KeyEventHandlers &handlers,
                             Translate translate)
    : m_postedKeys(postedKeys), m_handlers(handlers), m_translate(std::move(translate))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool OwnWindowKeys::eventFilter(QObject *receiver, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool isKey =
        type == QEvent::ShortcutOverride || type == QEvent::KeyPress || type == QEvent::KeyRelease;
    // What a window hands on to its items comes by here again.
    if (!isKey || !receiver->isWindowType())
        return false;
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (key.nativeScanCode() == 0 || !isTaken(key))
        return false;
    event->accept(); // also as no shortcut of the window's
    return true;
}

bool OwnWindowKeys::isTaken(const QKeyEvent &key)
{
    const auto seen = std::make_shared<Seen>(key);
    const auto last = std::exchange(m_last, seen);
    if (last && last->isRetoldBy(*seen)) {
        seen->isTaken = last->isTaken;
    } else {
        // X11 tells a repeat as a release and a press of the same time, and Qt does not notice when
        // the press has not come yet.
        const bool isRepeat = key.isAutoRepeat() ||
                              (last && last->type == QEvent::KeyRelease && last->isSameKey(*seen));
        seen->isTaken = report(key, isRepeat); // which may end this object
    }
    return seen->isTaken;
}

bool OwnWindowKeys::report(const QKeyEvent &key, bool isRepeat)
{
    const bool isPress = key.type() != QEvent::KeyRelease;
    const PostedKeys::Event posted{isPress, key.nativeScanCode()};
    if (m_postedKeys.take(PostedKeys::ofOwnWindows, posted, quint32(key.timestamp())))
        return false;
    auto event = m_translate(key);
    if (!event)
        return false;
    event->isRepeat = isRepeat;
    return m_handlers.call(*event);
}

} // namespace kestrova
