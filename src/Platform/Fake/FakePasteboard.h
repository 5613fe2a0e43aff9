#pragma once

#include "Platform/Pasteboard.h"

#include <functional>
#include <mutex>

namespace kestrova {

class FakePasteboard final : public Pasteboard
{
public:
    std::shared_ptr<PasteboardOffer> setString(const QString &text) override;
    std::optional<QString> string() override;

    /// What another application put there.
    void put(const std::optional<QString> &text);
    /// This process asks for the text that setString() put there last.
    void read(qint32 processIdentifier);
    /// From now on setString() throws this text; empty: works again.
    void failWriting(const QString &problem);
    /// Called on the writing thread after each setString().
    void whenWritten(std::function<void()> hook);

private:
    std::mutex m_mutex;
    std::optional<QString> m_text;
    std::shared_ptr<PasteboardOffer> m_offer = std::make_shared<PasteboardOffer>();
    QString m_problem;
    std::function<void()> m_written;
};

} // namespace kestrova
