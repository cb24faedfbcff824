#include "Gtk/Services/GtkTelephony.h"

#include <map>
#include <string>
#include <string_view>

#include "Gtk/GPtr.h"
#include "Gtk/Services/BusQuestions.h"

namespace tavo::gtk {

namespace {

constexpr Seconds patience{2};
constexpr const char* service = "org.freedesktop.ModemManager1";
constexpr const char* modemInterface = "org.freedesktop.ModemManager1.Modem";
constexpr const char* networkInterface = "org.freedesktop.ModemManager1.Modem.Modem3gpp";
constexpr const char* simInterface = "org.freedesktop.ModemManager1.Sim";
constexpr guint registeredAtHome = 1;

bool tellsNothing(const Carrier& carrier) { return !carrier.name && !carrier.mobileCountryCode; }

Carrier operatorIn(GVariant* properties, const char* nameKey, const char* identifierKey) {
  const char* name = nullptr;
  const char* identifier = nullptr;
  g_variant_lookup(properties, nameKey, "&s", &name);
  g_variant_lookup(properties, identifierKey, "&s", &identifier);
  return carrierOf(name, identifier);
}

Carrier operatorOfSim(const BusQuestions& bus, GVariant* modem) {
  const char* sim = nullptr;
  if (g_variant_lookup(modem, "Sim", "&o", &sim) == FALSE || std::string_view{sim} == "/") {
    return {};
  }
  const auto answer = bus.ask(sim, "org.freedesktop.DBus.Properties", "GetAll",
                              g_variant_new("(s)", simInterface), "(a{sv})");
  if (!answer) return {};
  const GVariantPtr properties{g_variant_get_child_value(answer.get(), 0)};
  return operatorIn(properties.get(), "OperatorName", "OperatorIdentifier");
}

Carrier operatorOfNetwork(GVariant* network) {
  guint state = 0;
  g_variant_lookup(network, "RegistrationState", "u", &state);
  if (state != registeredAtHome) return {};
  return operatorIn(network, "OperatorName", "OperatorCode");
}

Carrier operatorOf(const BusQuestions& bus, GVariant* interfaces) {
  const auto properties = [&](const char* interface) {
    return GVariantPtr{g_variant_lookup_value(interfaces, interface, G_VARIANT_TYPE_VARDICT)};
  };
  const auto modem = properties(modemInterface);
  if (!modem) return {};
  Carrier home = operatorOfSim(bus, modem.get());
  if (!tellsNothing(home)) return home;
  const auto network = properties(networkInterface);
  return network ? operatorOfNetwork(network.get()) : Carrier{};
}

// The modems by their paths, so that the first one stays the first.
std::map<std::string, GVariantPtr> modemsIn(GVariant* answer) {
  std::map<std::string, GVariantPtr> modems;
  const GVariantPtr objects{g_variant_get_child_value(answer, 0)};
  GVariantIter each;
  g_variant_iter_init(&each, objects.get());
  const char* path = nullptr;
  GVariant* interfaces = nullptr;
  while (g_variant_iter_next(&each, "{&o@a{sa{sv}}}", &path, &interfaces) != FALSE) {
    modems.insert_or_assign(path, GVariantPtr{interfaces});
  }
  return modems;
}

}  // namespace

Carrier carrierOf(const char* name, const char* identifier) {
  constexpr std::size_t countryDigits = 3;
  constexpr std::size_t fewest = 5;
  constexpr std::size_t most = 6;
  Carrier carrier;
  if (name != nullptr && *name != '\0') carrier.name = name;
  const std::string_view digits = identifier == nullptr ? "" : identifier;
  const bool isCode = digits.size() >= fewest && digits.size() <= most &&
                      digits.find_first_not_of("0123456789") == std::string_view::npos;
  if (isCode) {
    carrier.mobileCountryCode = digits.substr(0, countryDigits);
    carrier.mobileNetworkCode = digits.substr(countryDigits);
  }
  return carrier;
}

std::optional<Carrier> GtkTelephony::subscriberCarrier() const {
  const BusQuestions bus{G_BUS_TYPE_SYSTEM, service, patience};
  const auto answer =
      bus.ask("/org/freedesktop/ModemManager1", "org.freedesktop.DBus.ObjectManager",
              "GetManagedObjects", nullptr, "(a{oa{sa{sv}}})");
  if (!answer) return bus.isThere() ? std::nullopt : std::optional{Carrier{}};
  for (const auto& [path, interfaces] : modemsIn(answer.get())) {
    Carrier carrier = operatorOf(bus, interfaces.get());
    if (tellsNothing(carrier)) continue;
    if (const auto& code = carrier.mobileCountryCode) {
      carrier.isoCountryCode = countryOfNetworks(providers_, *code);
    }
    return carrier;
  }
  return Carrier{};
}

}  // namespace tavo::gtk
