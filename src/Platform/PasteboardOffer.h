#pragma once

#include <QList>

#include <functional>
#include <mutex>

namespace kestrova {

/// A text that was put on the clipboard, and what became of it: who asked for it, and whether
/// another program has put something else there. The clipboard writes it. Usable from any thread.
class PasteboardOffer
{
public:
    /// The processes that asked for the text itself since the last call, each once, in the order
    /// of their first requests; 0 stands for those that are not known. Asking only what kinds of
    /// contents there are does not count.
    QList<qint32> takeReaders();
    /// Whether another program has taken the clipboard. A later text of our own is no replacement.
    bool isReplaced() const;

    /// Calls the observer, in place of an earlier one, with each reader from now on, and at once
    /// when there are some that were not taken. On the clipboard's thread: it must neither block
    /// nor use the offer. Once this has returned, the earlier observer is no longer called.
    void observe(std::function<void()> observer);

    void addReader(qint32 processIdentifier);
    void setReplaced();

private:
    mutable std::mutex m_mutex;
    QList<qint32> m_readers;
    bool m_isReplaced = false;
    std::function<void()> m_observer;
};

} // namespace kestrova
