#pragma once

#include "Concurrency/Clock.h"
#include "Concurrency/MainExecutor.h"
#include "Concurrency/Timings.h"
#include "Models/Dictation/Delivery.h"
#include "Platform/PasteboardOffer.h"
#include "Platform/Workspace.h"

#include <memory>

namespace kestrova {

/// Watches whether the application that gets the paste keystroke asks for the text. Programs that
/// keep a history of the clipboard ask too, but as soon as the text is there: whoever asked before
/// the keystroke is no witness, unless it is the application's own process.
///
/// Held by shared pointer. begin() and wait() are called on one worker, follow() after them.
class DeliveryWatch : public std::enable_shared_from_this<DeliveryWatch>
{
public:
    /// The workspace and the executor outlive this.
    DeliveryWatch(Workspace &workspace, MainExecutor &main, std::shared_ptr<PasteboardOffer> offer);
    ~DeliveryWatch();
    Q_DISABLE_COPY_MOVE(DeliveryWatch)

    /// Just before the keystroke, before each of several attempts: whose it will be.
    void begin();
    /// Returns as soon as the application asks, and in the end what is known.
    DeliveryOutcome wait(Clock &clock, const Timings &timings, const std::stop_token &stop);
    /// From now on, while this object lives: calls the handler on the main thread, once, when the
    /// application asks after all.
    void follow(std::function<void()> whenRequested);

private:
    /// Whether waiting longer can tell nothing more.
    bool isDecided();
    void note(const QList<qint32> &readers);
    bool isWitness(qint32 reader);
    DeliveryOutcome outcome() const;

    Workspace &m_workspace;
    MainExecutor &m_main;
    const std::shared_ptr<PasteboardOffer> m_offer;

    std::optional<RunningApplication> m_front;
    QList<qint32> m_earlierReaders;
    bool m_isRequested = false;
    bool m_isReadOtherwise = false; ///< by somebody of whom it does not follow
};

} // namespace kestrova
