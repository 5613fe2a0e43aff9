#pragma once

#include "Concurrency/Executor.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace kestrova {

/// Runs posted work on a thread each, but one at a time: whenever work starts, pauses or ends, the
/// schedule decides which goes on.
class Schedule final : public Executor
{
public:
    struct Decision
    {
        std::size_t choice;
        std::size_t optionCount;
    };

    /// Decides as it is told, and always for the first one when that has been used up.
    explicit Schedule(std::vector<Decision> decisions = {}) : m_decisions(std::move(decisions)) {}

    void post(std::function<void()> work) override
    {
        const std::lock_guard lock(m_mutex);
        const std::size_t number = m_hasEnded.size();
        m_hasEnded.push_back(false);
        m_threads.emplace_back([this, number, work = std::move(work)] {
            waitForTurn(number);
            work();
            endTurn(number);
        });
    }

    /// Lets others go on first, if the schedule says so. Called by the work.
    void pause()
    {
        std::size_t number = 0;
        {
            std::unique_lock lock(m_mutex);
            number = *std::exchange(m_turn, std::nullopt);
            m_turnChanged.notify_all();
        }
        waitForTurn(number);
    }

    /// Returns when all work has ended.
    void run()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            std::vector<std::size_t> options;
            for (std::size_t i = 0; i < m_hasEnded.size(); ++i) {
                if (!m_hasEnded[i])
                    options.push_back(i);
            }
            if (options.empty())
                break;
            m_turn = options.at(decide(options.size()));
            m_turnChanged.notify_all();
            m_turnChanged.wait(lock, [this] { return !m_turn; });
        }
        for (std::thread &thread : std::exchange(m_threads, {}))
            thread.join();
    }

    /// The decisions of the next schedule, the last of which differs; empty after the last one.
    std::vector<Decision> following() const
    {
        std::vector<Decision> decisions(m_decisions.begin(),
                                        m_decisions.begin() + std::ptrdiff_t(m_decisionCount));
        while (!decisions.empty() && decisions.back().choice + 1 == decisions.back().optionCount)
            decisions.pop_back();
        if (!decisions.empty())
            ++decisions.back().choice;
        return decisions;
    }

private:
    void waitForTurn(std::size_t number)
    {
        std::unique_lock lock(m_mutex);
        m_turnChanged.wait(lock, [&] { return m_turn == number; });
    }

    void endTurn(std::size_t number)
    {
        const std::lock_guard lock(m_mutex);
        m_hasEnded[number] = true;
        m_turn.reset();
        m_turnChanged.notify_all();
    }

    std::size_t decide(std::size_t optionCount)
    {
        if (m_decisionCount == m_decisions.size())
            m_decisions.push_back({0, optionCount});
        return m_decisions[m_decisionCount++].choice;
    }

    std::vector<Decision> m_decisions;
    std::size_t m_decisionCount = 0;
    std::mutex m_mutex;
    std::condition_variable m_turnChanged;
    std::optional<std::size_t> m_turn;
    std::vector<bool> m_hasEnded;
    std::vector<std::thread> m_threads;
};

/// Calls the scenario with every schedule that there is for it. Returns their number.
template <typename Scenario>
int forEachSchedule(Scenario scenario)
{
    std::vector<Schedule::Decision> decisions;
    int count = 0;
    do {
        Schedule schedule(std::move(decisions));
        scenario(schedule);
        decisions = schedule.following();
        ++count;
    } while (!decisions.empty());
    return count;
}

} // namespace kestrova
