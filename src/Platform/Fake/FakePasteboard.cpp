#include "Platform/Fake/FakePasteboard.h"

#include "Models/ReadableError.h"

namespace kestrova {

std::shared_ptr<PasteboardOffer> FakePasteboard::setString(const QString &text)
{
    std::function<void()> written;
    const auto offer = std::make_shared<PasteboardOffer>();
    {
        const std::lock_guard lock(m_mutex);
        if (!m_problem.isEmpty())
            throw PlatformError(m_problem);
        m_text = text;
        m_offer = offer;
        written = m_written;
    }
    if (written)
        written();
    return offer;
}

std::optional<QString> FakePasteboard::string()
{
    const std::lock_guard lock(m_mutex);
    return m_text;
}

void FakePasteboard::put(const std::optional<QString> &text)
{
    const std::lock_guard lock(m_mutex);
    m_text = text;
    m_offer->setReplaced();
}

void FakePasteboard::read(qint32 processIdentifier)
{
    const std::lock_guard lock(m_mutex);
    m_offer->addReader(processIdentifier);
}

void FakePasteboard::failWriting(const QString &problem)
{
    const std::lock_guard lock(m_mutex);
    m_problem = problem;
}

void FakePasteboard::whenWritten(std::function<void()> hook)
{
    const std::lock_guard lock(m_mutex);
    m_written = std::move(hook);
}

} // namespace kestrova
