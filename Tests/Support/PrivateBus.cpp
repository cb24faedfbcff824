#include "Support/PrivateBus.h"

#include <initializer_list>

namespace tavo::test {

PrivateBus::PrivateBus() : daemon_{g_test_dbus_new(G_TEST_DBUS_NONE)} {
  g_test_dbus_up(daemon_);
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(daemon_), TRUE);
  sender_ = g_dbus_connection_new_for_address_sync(
      g_test_dbus_get_bus_address(daemon_),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
}

PrivateBus::~PrivateBus() {
  g_object_unref(sender_);
  // Losing a shared connection would end the program.
  for (const GBusType type : {G_BUS_TYPE_SYSTEM, G_BUS_TYPE_SESSION}) {
    GDBusConnection* own = g_bus_get_sync(type, nullptr, nullptr);
    if (own != nullptr) g_dbus_connection_set_exit_on_close(own, FALSE);
    g_clear_object(&own);
  }
  g_test_dbus_down(daemon_);
  g_unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
  g_object_unref(daemon_);
}

void PrivateBus::own(const char* name) const {
  GVariant* const answer = g_dbus_connection_call_sync(
      sender_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      nullptr);
  if (answer != nullptr) g_variant_unref(answer);
}

void PrivateBus::emit(const char* interface, const char* signal, GVariant* parameters,
                      const char* path) const {
  g_dbus_connection_emit_signal(sender_, nullptr, path, interface, signal, parameters, nullptr);
  g_dbus_connection_flush_sync(sender_, nullptr, nullptr);
}

// An answer comes after everything that was sent to the same end before.
void PrivateBus::waitForSignals() const {
  for (const GBusType type : {G_BUS_TYPE_SYSTEM, G_BUS_TYPE_SESSION}) {
    GDBusConnection* const own = g_bus_get_sync(type, nullptr, nullptr);
    GVariant* const answer = g_dbus_connection_call_sync(
        own, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId",
        nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (answer != nullptr) g_variant_unref(answer);
    g_object_unref(own);
  }
}

}  // namespace tavo::test
