#pragma once

#include "Platform/Pasteboard.h"

#include <functional>
#include <mutex>

namespace kestrova {

class FakePasteboardControl
{
public:
    virtual ~FakePasteboardControl() = default;

    /// What another application put there.
    virtual void put(const std::optional<QString> &text) = 0;
    /// This process asks for the text that setString() put there last.
    virtual void read(qint32 processIdentifier) = 0;
    /// From now on setString() throws this text; empty: works again.
    virtual void failWriting(const QString &problem) = 0;
    /// Called on the writing thread after each setString().
    virtual void whenWritten(std::function<void()> hook) = 0;
};

class FakePasteboard final : public Pasteboard, public FakePasteboardControl
{
public:
    std::shared_ptr<PasteboardOffer> setString(const QString &text) override;
    std::optional<QString> string() override;

    void put(const std::optional<QString> &text) override;
    void read(qint32 processIdentifier) override;
    void failWriting(const QString &problem) override;
    void whenWritten(std::function<void()> hook) override;

private:
    std::mutex m_mutex;
    std::optional<QString> m_text;
    std::shared_ptr<PasteboardOffer> m_offer = std::make_shared<PasteboardOffer>();
    QString m_problem;
    std::function<void()> m_written;
};

} // namespace kestrova
