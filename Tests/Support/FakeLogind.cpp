#include "Support/FakeLogind.h"

namespace tavo::test {

FakeLogind::FakeLogind(const PrivateBus& bus) : connection_{bus.connection()} {
  static constexpr GDBusInterfaceVTable table{
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
         GDBusMethodInvocation* question, gpointer) {
        g_dbus_method_invocation_return_value(question, g_variant_new("(o)", sessionPath));
      },
      nullptr,
      nullptr,
      {}};
  GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(
      "<node><interface name='org.freedesktop.login1.Manager'><method name='GetSession'>"
      "<arg type='s' direction='in'/><arg type='o' direction='out'/></method></interface></node>",
      nullptr);
  object_ =
      g_dbus_connection_register_object(connection_, "/org/freedesktop/login1", node->interfaces[0],
                                        &table, nullptr, nullptr, nullptr);
  g_dbus_node_info_unref(node);
  bus.own("org.freedesktop.login1");
}

FakeLogind::~FakeLogind() { g_dbus_connection_unregister_object(connection_, object_); }

}  // namespace tavo::test
