#include "Support/FakeNetwork.h"

namespace tavo::test {

namespace {

struct Network {
  GObject parent;
  gboolean available;
  GNetworkConnectivity connectivity;
};

enum Property : guint { available = 1, metered, connectivity };

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* /*spec*/) {
  const auto* const network = reinterpret_cast<const Network*>(object);
  if (id == Property::connectivity) {
    g_value_set_enum(value, network->connectivity);
  } else {
    g_value_set_boolean(value, id == Property::available ? network->available : FALSE);
  }
}

void initializeClass(gpointer objectClass, gpointer /*data*/) {
  auto* const made = static_cast<GObjectClass*>(objectClass);
  made->get_property = &getProperty;
  g_object_class_override_property(made, Property::available, "network-available");
  g_object_class_override_property(made, Property::metered, "network-metered");
  g_object_class_override_property(made, Property::connectivity, "connectivity");
}

GType networkType() {
  static const GType type = [] {
    const GTypeInfo info{sizeof(GObjectClass), nullptr, nullptr, &initializeClass, nullptr, nullptr,
                         sizeof(Network),      0,       nullptr, nullptr};
    const GType made =
        g_type_register_static(G_TYPE_OBJECT, "TavoFakeNetwork", &info, G_TYPE_FLAG_NONE);
    const GInterfaceInfo plain{nullptr, nullptr, nullptr};
    g_type_add_interface_static(made, G_TYPE_INITABLE, &plain);
    g_type_add_interface_static(made, G_TYPE_NETWORK_MONITOR, &plain);
    return made;
  }();
  return type;
}

}  // namespace

FakeNetwork::FakeNetwork()
    : monitor_{gtk::GPtr<GNetworkMonitor>::adopt(
          G_NETWORK_MONITOR(g_object_new(networkType(), nullptr)))} {
  set(false, G_NETWORK_CONNECTIVITY_LOCAL);
}

void FakeNetwork::set(bool isAvailable, GNetworkConnectivity now) {
  auto* const network = reinterpret_cast<Network*>(monitor_.get());
  network->available = isAvailable ? TRUE : FALSE;
  network->connectivity = now;
}

void FakeNetwork::announce() {
  const gboolean isAvailable = g_network_monitor_get_network_available(monitor_.get());
  g_signal_emit_by_name(monitor_.get(), "network-changed", isAvailable);
}

}  // namespace tavo::test
