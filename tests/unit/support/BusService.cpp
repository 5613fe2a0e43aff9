#include "support/BusService.h"

#include <stdexcept>

namespace kestrova {

namespace {

GDBusConnection *connectToBus()
{
    char *address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    constexpr auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GDBusConnection *bus =
        g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr);
    g_free(address);
    return bus;
}

} // namespace

void BusService::Call::answer(GVariant *values) const
{
    g_dbus_method_invocation_return_value(invocation, values);
}

void BusService::Call::refuse(const char *errorName) const
{
    g_dbus_method_invocation_return_dbus_error(invocation, errorName, "no");
}

void BusService::Call::ignore() const
{
    g_object_unref(invocation);
}

BusService::BusService(const char *name, const char *objectPath, const char *description,
                       Handler handler)
    : m_handler(std::move(handler)), m_context(g_main_context_new()),
      m_loop(g_main_loop_new(m_context, /*is_running=*/FALSE))
{
    own(name, objectPath, description);
    m_thread = std::thread([this] {
        g_main_context_push_thread_default(m_context);
        g_main_loop_run(m_loop);
        g_main_context_pop_thread_default(m_context);
    });
}

BusService::~BusService()
{
    GSource *end = g_idle_source_new();
    g_source_set_callback(
        end,
        [](gpointer loop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop *>(loop));
            return G_SOURCE_REMOVE;
        },
        m_loop, nullptr);
    g_source_attach(end, m_context);
    g_source_unref(end);
    m_thread.join();
    g_dbus_connection_close_sync(m_bus, nullptr, nullptr);
    g_object_unref(m_bus);
    g_dbus_node_info_unref(m_interface);
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

void BusService::own(const char *name, const char *objectPath, const char *description)
{
    g_main_context_push_thread_default(m_context);
    static constexpr GDBusInterfaceVTable table{takeCall, nullptr, nullptr, {}};
    m_bus = connectToBus();
    m_interface = g_dbus_node_info_new_for_xml(description, nullptr);
    g_dbus_connection_register_object(m_bus, objectPath, m_interface->interfaces[0], &table, this,
                                      nullptr, nullptr);
    GVariant *reply = g_dbus_connection_call_sync(
        m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", name, 0u), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, nullptr);
    g_main_context_pop_thread_default(m_context);
    if (!reply)
        throw std::runtime_error("the name is not to be had on the session bus");
    g_variant_unref(reply);
}

void BusService::emitSignal(const char *objectPath, const char *interfaceName, const char *signal,
                            GVariant *values)
{
    g_dbus_connection_emit_signal(m_bus, nullptr, objectPath, interfaceName, signal, values,
                                  nullptr);
}

void BusService::takeCall(GDBusConnection *, const char *sender, const char *, const char *,
                          const char *method, GVariant *arguments,
                          GDBusMethodInvocation *invocation, gpointer self)
{
    auto &service = *static_cast<BusService *>(self);
    service.m_handler(service, Call{method, sender, arguments, invocation});
}

} // namespace kestrova
