#include "Platform/Linux/Applications/SessionBus.h"

#include "Platform/Linux/Applications/GioPointer.h"

namespace kestrova::SessionBus {

namespace {

GioPointer<GDBusConnection> connectToBus()
{
    char *address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!address)
        return nullptr;
    constexpr auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GioPointer<GDBusConnection> bus(
        g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr));
    g_free(address);
    return bus;
}

// The object path that the Desktop Entry Specification derives from the id.
QByteArray objectPath(const QByteArray &identifier)
{
    return '/' + QByteArray(identifier).replace('.', '/').replace('-', '_');
}

} // namespace

bool activateApplication(const QString &identifier, std::chrono::milliseconds limit)
{
    const QByteArray name = identifier.toUtf8();
    if (!g_dbus_is_name(name.constData()) || g_dbus_is_unique_name(name.constData()))
        return false;
    const GioPointer<GDBusConnection> bus = connectToBus();
    if (!bus)
        return false;
    GVariant *const noPlatformData = g_variant_new("(a{sv})", nullptr);
    GVariant *const reply = g_dbus_connection_call_sync(
        bus.get(), name.constData(), objectPath(name).constData(), "org.freedesktop.Application",
        "Activate", noPlatformData, nullptr, G_DBUS_CALL_FLAGS_NONE,
        static_cast<int>(limit.count()), nullptr, nullptr);
    if (!reply)
        return false;
    g_variant_unref(reply);
    return true;
}

} // namespace kestrova::SessionBus
