#include "Services/Dictation/DeliveryWatch.h"

#include <algorithm>

namespace kestrova {

DeliveryWatch::DeliveryWatch(Workspace &workspace, MainExecutor &main,
                             std::shared_ptr<PasteboardOffer> offer)
    : m_workspace(workspace), m_main(main), m_offer(std::move(offer))
{
}

DeliveryWatch::~DeliveryWatch()
{
    m_offer->observe({});
}

void DeliveryWatch::begin()
{
    m_earlierReaders += m_offer->takeReaders();
    m_main.call([this] {
        m_front = m_workspace.frontmostApplication();
        // Some fetch a text as soon as it is there and paste what they have.
        m_isReadOtherwise = m_front && std::ranges::any_of(m_earlierReaders, [this](auto reader) {
                                return m_workspace.isOfApplication(reader, *m_front);
                            });
    });
}

DeliveryOutcome DeliveryWatch::wait(Clock &clock, const Timings &timings,
                                    const std::stop_token &stop)
{
    const Clock::TimePoint deadline = clock.now() + timings.requestWait;
    while (!isDecided() && clock.now() < deadline &&
           clock.sleep(timings.requestPollInterval, stop)) {
    }
    return outcome();
}

void DeliveryWatch::follow(std::function<void()> whenRequested)
{
    m_offer->observe([&main = m_main, weak = weak_from_this(), handler = std::move(whenRequested)] {
        main.post([weak, handler] {
            const auto watch = weak.lock();
            if (!watch || watch->m_isRequested)
                return;
            watch->note(watch->m_offer->takeReaders());
            if (watch->m_isRequested)
                handler();
        });
    });
}

bool DeliveryWatch::isDecided()
{
    const QList<qint32> readers = m_offer->takeReaders();
    if (!readers.isEmpty())
        m_main.call([&] { note(readers); });
    return m_isRequested || (m_isReadOtherwise && !m_front);
}

void DeliveryWatch::note(const QList<qint32> &readers)
{
    for (const qint32 reader : readers)
        (isWitness(reader) ? m_isRequested : m_isReadOtherwise) = true;
}

bool DeliveryWatch::isWitness(qint32 reader)
{
    if (!m_front)
        return false;
    const bool isItself = reader >= 1 && reader == m_front->processIdentifier;
    return isItself ||
           (!m_earlierReaders.contains(reader) && m_workspace.isOfApplication(reader, *m_front));
}

DeliveryOutcome DeliveryWatch::outcome() const
{
    if (m_isRequested)
        return DeliveryOutcome::requested;
    if (m_offer->isReplaced())
        return DeliveryOutcome::replaced;
    return m_isReadOtherwise ? DeliveryOutcome::unknown : DeliveryOutcome::leftOnClipboard;
}

} // namespace kestrova
