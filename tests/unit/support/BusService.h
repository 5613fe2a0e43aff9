#pragma once

#include <gio/gio.h>

#include <functional>
#include <string>
#include <thread>

namespace kestrova {

/// Owns a name on the session bus and answers the calls of one interface of one object there, from
/// a thread of its own, as long as this object lasts.
class BusService
{
public:
    struct Call
    {
        std::string method;
        std::string sender;  ///< the caller's unique name
        GVariant *arguments; ///< a tuple, the caller's
        GDBusMethodInvocation *invocation;

        /// The answer's tuple is taken over.
        void answer(GVariant *values) const;
        void refuse(const char *errorName) const;
        void ignore() const;
    };
    /// Called on the service's thread, it does one of the three with each call.
    using Handler = std::function<void(BusService &service, const Call &call)>;

    /// The interface is the first one of the introspection XML. Returns when the name is owned;
    /// throws std::runtime_error when that fails.
    BusService(const char *name, const char *objectPath, const char *description, Handler handler);
    ~BusService();
    BusService(const BusService &) = delete;
    BusService &operator=(const BusService &) = delete;

    /// Sends a signal; the values' tuple is taken over.
    void emitSignal(const char *objectPath, const char *interfaceName, const char *signal,
                    GVariant *values);

private:
    void own(const char *name, const char *objectPath, const char *description);
    static void takeCall(GDBusConnection *, const char *sender, const char *, const char *,
                         const char *method, GVariant *arguments, GDBusMethodInvocation *invocation,
                         gpointer self);

    const Handler m_handler;
    GMainContext *m_context;
    GMainLoop *m_loop;
    GDBusConnection *m_bus = nullptr;
    GDBusNodeInfo *m_interface = nullptr;
    std::thread m_thread;
};

} // namespace kestrova
