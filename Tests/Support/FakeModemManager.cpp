#include "Support/FakeModemManager.h"

namespace tavo::test {

namespace {

constexpr const char* manager =
    "<node><interface name='org.freedesktop.DBus.ObjectManager'>"
    "<method name='GetManagedObjects'><arg type='a{oa{sa{sv}}}' direction='out'/></method>"
    "</interface></node>";
constexpr const char* sim =
    "<node><interface name='org.freedesktop.ModemManager1.Sim'>"
    "<property name='OperatorName' type='s' access='read'/>"
    "<property name='OperatorIdentifier' type='s' access='read'/></interface></node>";

}  // namespace

FakeModemManager::FakeModemManager(const PrivateBus& bus) : connection_{bus.connection()} {
  static constexpr GDBusInterfaceVTable managerTable{
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
         GDBusMethodInvocation* question,
         gpointer self) { static_cast<FakeModemManager*>(self)->answer(question); },
      nullptr,
      nullptr,
      {}};
  static constexpr GDBusInterfaceVTable simTable{
      nullptr,
      [](GDBusConnection*, const char*, const char*, const char*, const char* property, GError**,
         gpointer self) {
        const auto& fake = *static_cast<FakeModemManager*>(self);
        const bool isName = std::string{property} == "OperatorName";
        const auto& text = isName ? fake.simOperatorName : fake.simOperatorIdentifier;
        return g_variant_new_string(text.c_str());
      },
      nullptr,
      {}};
  exportObject("/org/freedesktop/ModemManager1", manager, managerTable);
  exportObject(simPath, sim, simTable);
  bus.own("org.freedesktop.ModemManager1");
}

FakeModemManager::~FakeModemManager() {
  for (auto* question : unanswered_) {
    g_dbus_method_invocation_return_dbus_error(question, "org.test.Gone", "too late");
  }
  for (const guint object : objects_) g_dbus_connection_unregister_object(connection_, object);
}

void FakeModemManager::exportObject(const char* path, const char* description,
                                    const GDBusInterfaceVTable& table) {
  GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(description, nullptr);
  objects_.push_back(g_dbus_connection_register_object(connection_, path, node->interfaces[0],
                                                       &table, this, nullptr, nullptr));
  g_dbus_node_info_unref(node);
}

void FakeModemManager::answer(GDBusMethodInvocation* question) {
  if (silent) return unanswered_.push_back(question);
  GVariant* all = g_variant_new_parsed(modems.c_str());
  g_dbus_method_invocation_return_value(question, g_variant_new_tuple(&all, 1));
}

}  // namespace tavo::test
