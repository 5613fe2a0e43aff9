#pragma once

#include <gio/gio.h>

#include <atomic>
#include <thread>

namespace kestrova {

/// Owns a name on the session bus and answers org.freedesktop.Application there, from a thread of
/// its own, as long as this object lasts.
class BusApplication
{
public:
    enum class Answer { yes, refusal, none };

    /// Returns when the name is owned; throws std::runtime_error when that fails.
    BusApplication(const char *name, const char *objectPath, Answer answer);
    ~BusApplication();
    BusApplication(const BusApplication &) = delete;
    BusApplication &operator=(const BusApplication &) = delete;

    int activationCount() const { return m_activationCount; }

private:
    void own(const char *name, const char *objectPath);
    static void takeCall(GDBusConnection *, const char *, const char *, const char *, const char *,
                         GVariant *, GDBusMethodInvocation *invocation, gpointer self);

    const Answer m_answer;
    std::atomic<int> m_activationCount = 0;
    GMainContext *m_context;
    GMainLoop *m_loop;
    GDBusConnection *m_bus = nullptr;
    GDBusNodeInfo *m_interface = nullptr;
    GDBusMethodInvocation *m_unanswered = nullptr;
    std::thread m_thread;
};

} // namespace kestrova
