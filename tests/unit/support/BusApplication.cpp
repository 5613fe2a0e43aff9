#include "support/BusApplication.h"

#include <stdexcept>

namespace kestrova {

namespace {

constexpr char interfaceDescription[] =
    "<node><interface name='org.freedesktop.Application'>"
    "<method name='Activate'><arg name='platform_data' type='a{sv}' direction='in'/></method>"
    "</interface></node>";

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

BusApplication::BusApplication(const char *name, const char *objectPath, Answer answer)
    : m_answer(answer), m_context(g_main_context_new()),
      m_loop(g_main_loop_new(m_context, /*is_running=*/FALSE))
{
    own(name, objectPath);
    m_thread = std::thread([this] {
        g_main_context_push_thread_default(m_context);
        g_main_loop_run(m_loop);
        g_main_context_pop_thread_default(m_context);
    });
}

BusApplication::~BusApplication()
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
    g_clear_object(&m_unanswered);
    g_dbus_connection_close_sync(m_bus, nullptr, nullptr);
    g_object_unref(m_bus);
    g_dbus_node_info_unref(m_interface);
    g_main_loop_unref(m_loop);
    g_main_context_unref(m_context);
}

void BusApplication::own(const char *name, const char *objectPath)
{
    g_main_context_push_thread_default(m_context);
    static constexpr GDBusInterfaceVTable table{takeCall, nullptr, nullptr, {}};
    m_bus = connectToBus();
    m_interface = g_dbus_node_info_new_for_xml(interfaceDescription, nullptr);
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

void BusApplication::takeCall(GDBusConnection *, const char *, const char *, const char *,
                              const char *, GVariant *, GDBusMethodInvocation *invocation,
                              gpointer self)
{
    auto &application = *static_cast<BusApplication *>(self);
    ++application.m_activationCount;
    switch (application.m_answer) {
    case Answer::yes:
        g_dbus_method_invocation_return_value(invocation, nullptr);
        break;
    case Answer::refusal:
        g_dbus_method_invocation_return_dbus_error(invocation, "org.example.Refused", "no");
        break;
    case Answer::none:
        application.m_unanswered = invocation;
        break;
    }
}

} // namespace kestrova
