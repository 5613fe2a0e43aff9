#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace kestrova {

/// Ends what it stands for when it is destroyed.
class Observation
{
public:
    virtual ~Observation() = default;
};

/// Those who are to be told of something, oldest first. Each is told as long as the Observation
/// lives that add() returned for it, which may outlive this list. Used by one thread; observations
/// may end on any. A copy has the same observers.
///
/// Whoever is told may end any observation, its own too, destroy the list, and add others, which
/// are not told this time.
template <typename Observer>
class Observers
{
public:
    [[nodiscard]] std::unique_ptr<Observation> add(Observer observer)
    {
        std::erase_if(m_observers, [](const auto &known) { return known.expired(); });
        auto shared = std::make_shared<const Observer>(std::move(observer));
        m_observers.push_back(shared);
        return std::make_unique<Registration>(std::move(shared));
    }

    /// How many observations there are.
    std::size_t count() const
    {
        return std::size_t(std::count_if(m_observers.begin(), m_observers.end(),
                                         [](const auto &known) { return !known.expired(); }));
    }

    /// Calls `tell` with one after the other.
    template <typename Tell>
    void forEach(const Tell &tell) const
    {
        anyOf([&tell](const Observer &observer) {
            std::invoke(tell, observer);
            return false;
        });
    }

    /// Calls `tell` with one after the other until it returns true; returns whether it did.
    template <typename Tell>
    bool anyOf(const Tell &tell) const
    {
        const auto observers = m_observers;
        return std::any_of(observers.begin(), observers.end(), [&tell](const auto &known) {
            const auto observer = known.lock();
            return observer && std::invoke(tell, *observer);
        });
    }

private:
    struct Registration final : Observation
    {
        explicit Registration(std::shared_ptr<const Observer> registered)
            : observer(std::move(registered))
        {
        }

        const std::shared_ptr<const Observer> observer;
    };

    std::vector<std::weak_ptr<const Observer>> m_observers;
};

} // namespace kestrova
