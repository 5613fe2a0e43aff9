#include "Platform/PasteboardOffer.h"

#include <utility>

namespace kestrova {

QList<qint32> PasteboardOffer::takeReaders()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_readers, {});
}

bool PasteboardOffer::isReplaced() const
{
    const std::lock_guard lock(m_mutex);
    return m_isReplaced;
}

void PasteboardOffer::observe(std::function<void()> observer)
{
    const std::lock_guard lock(m_mutex);
    m_observer = std::move(observer);
    if (m_observer && !m_readers.isEmpty())
        m_observer();
}

void PasteboardOffer::addReader(qint32 processIdentifier)
{
    const std::lock_guard lock(m_mutex);
    if (!m_readers.contains(processIdentifier))
        m_readers.append(processIdentifier);
    if (m_observer)
        m_observer();
}

void PasteboardOffer::setReplaced()
{
    const std::lock_guard lock(m_mutex);
    m_isReplaced = true;
}

} // namespace kestrova
