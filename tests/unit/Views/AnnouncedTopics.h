#pragma once

#include <QMetaMethod>
#include <QObject>
#include <QSignalSpy>

#include <memory>
#include <string>
#include <vector>

namespace kestrova {

/// Which of a model's signals for its properties a change emits.
class AnnouncedTopics
{
public:
    explicit AnnouncedTopics(const QObject &model)
    {
        const QMetaObject &type = *model.metaObject();
        for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
            const QMetaMethod topic = type.property(i).notifySignal();
            const auto isTopic = [&](const auto &spy) {
                return spy->signal() == topic.methodSignature();
            };
            if (topic.isValid() && std::none_of(m_spies.begin(), m_spies.end(), isTopic))
                m_spies.push_back(std::make_unique<QSignalSpy>(&model, topic));
        }
    }

    /// By the names of the signals, each once.
    template <typename Change>
    std::vector<std::string> announcedBy(const Change &change) const
    {
        for (const auto &spy : m_spies)
            spy->clear();
        change();
        std::vector<std::string> topics;
        for (const auto &spy : m_spies) {
            if (!spy->isEmpty())
                topics.push_back(spy->signal().chopped(2).toStdString());
        }
        return topics;
    }

private:
    std::vector<std::unique_ptr<QSignalSpy>> m_spies;
};

} // namespace kestrova
