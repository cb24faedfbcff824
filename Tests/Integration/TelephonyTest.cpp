// The mobile network of the SIM, from the service that manages modems.

#include <filesystem>
#include <fstream>
#include <string_view>

#include <tavo/Runtime.h>
#include <tavo/XDeviceInformation.h>

#include "Gtk/Services/GtkTelephony.h"
#include "Gtk/Services/GtkUserDefaults.h"
#include "Headless/HeadlessPlatform.h"
#include "Support/FakeModemManager.h"
#include "Support/GtkLoopTest.h"

namespace tavo::test {
namespace {

using CarrierInfo = XDeviceInformation::CarrierInfo;

Carrier carrier(const char* name, const char* country, const char* network) {
  const bool isListed = country == std::string_view{"228"};
  return {name, isListed ? std::optional{"ch"} : std::nullopt, country, network};
}
Carrier named(const char* name) { return {name, std::nullopt, std::nullopt, std::nullopt}; }

// A modem with this path to its SIM, and what its network says, in GLib's text form.
std::string modem(const std::string& sim, const std::string& network = "@a{sv} {}") {
  return "{objectpath '/org/freedesktop/ModemManager1/Modem/0': "
         "{'org.freedesktop.ModemManager1.Modem': {'Sim': <objectpath '" +
         sim + "'>}, 'org.freedesktop.ModemManager1.Modem.Modem3gpp': " + network + "}}";
}
std::string network(int registration) {
  return "{'RegistrationState': <uint32 " + std::to_string(registration) +
         ">, 'OperatorName': <'Air Net'>, 'OperatorCode': <'310260'>}";
}

// A list of networks: a country that shares its code with an island, and codes that are no country.
constexpr const char* networks = R"(<!DOCTYPE serviceproviders SYSTEM "x.dtd">
<serviceproviders format="2.0">
<country code="CH"><provider><gsm><network-id mcc="228" mnc="01"/><network-id mcc="228" mnc="02"/>
  </gsm></provider></country>
<country code="li"><provider><gsm><network-id mcc="228" mnc="09"/></gsm></provider></country>
<country code="world"><provider><gsm><network-id mcc="901" mnc="01"/></gsm></provider></country>
</serviceproviders>)";

class TelephonyTest : public GtkLoopTest {
 protected:
  TelephonyTest() { std::ofstream{providers_} << networks; }

  // Asks beside the loop, as it is meant, and turns the loop meanwhile.
  std::optional<Carrier> lookUp() {
    std::optional<Carrier> found;
    bool answered = false;
    runLoop_->background([&] {
      auto told = gtk::GtkTelephony{providers_}.subscriberCarrier();
      runLoop_->post([&, told] {
        found = told;
        answered = true;
      });
    });
    runUntil([&] { return answered; });
    EXPECT_TRUE(answered);
    return found;
  }

  const std::string providers_ = folder_.path("networks.xml");
};

TEST_F(TelephonyTest, TellsTheHomeNetwork) {
  const PrivateBus bus;
  FakeModemManager manager{bus};
  struct Row {
    const char* name;
    std::string modems;
    const char* simName;
    const char* simIdentifier;
    Carrier told;
  };
  const std::string sim = FakeModemManager::simPath;
  const Row rows[] = {
      {"SIM", modem(sim), "Cell Net", "22801", carrier("Cell Net", "228", "01")},
      {"three digits", modem(sim, network(1)), "Cell", "310260", carrier("Cell", "310", "260")},
      {"locked SIM at home", modem(sim, network(1)), "", "", carrier("Air Net", "310", "260")},
      {"locked SIM abroad", modem(sim, network(5)), "", "", {}},
      {"no SIM", modem("/"), "Cell Net", "22801", {}},
      {"SIM that is gone", modem("/nowhere"), "Cell Net", "22801", {}},
      {"name alone", modem(sim), "Cell Net", "", named("Cell Net")},
      {"no code", modem(sim), "Cell Net", "228 1", named("Cell Net")},
      {"code too long", modem(sim), "Cell Net", "22801234", named("Cell Net")},
      {"no modem", "@a{oa{sa{sv}}} {}", "Cell Net", "22801", {}},
      {"wrong types",
       "{objectpath '/m': {'org.freedesktop.ModemManager1.Modem': {'Sim': <7>}}}",
       "Cell Net",
       "22801",
       {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    manager.modems = row.modems;
    manager.simOperatorName = row.simName;
    manager.simOperatorIdentifier = row.simIdentifier;
    EXPECT_EQ(lookUp(), row.told);
  }
}

TEST_F(TelephonyTest, ReadsTheCountryFromTheListOfNetworks) {
  const auto country = [&](std::string_view code) {
    return gtk::countryOfNetworks(providers_, code).value_or("none");
  };
  EXPECT_EQ(country("228"), "ch");
  EXPECT_EQ(country("310"), "none");
  EXPECT_EQ(country("901"), "none");
  for (const std::string broken :
       {"", "<a>", "\xff", "<country code='ch'><network-id mcc='228'/>"}) {
    std::ofstream{providers_} << broken;
    EXPECT_EQ(country("228"), "none") << broken;
  }
  std::ofstream{providers_} << networks << std::string(std::size_t{9} << 20U, ' ');
  EXPECT_EQ(country("228"), "none") << "larger than any such list";
  std::filesystem::remove(providers_);
  EXPECT_EQ(country("228"), "none");
}

TEST_F(TelephonyTest, WithoutAServiceThereIsNoNetworkAndASilentOneTellsNothing) {
  {
    const PrivateBus bus;
    EXPECT_EQ(lookUp(), Carrier{});
    FakeModemManager manager{bus};
    manager.silent = true;
    EXPECT_EQ(lookUp(), std::nullopt);
  }
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere", TRUE);
  EXPECT_EQ(lookUp(), Carrier{});
  g_unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

TEST_F(TelephonyTest, TheNextLaunchKnowsTheNetworkAtOnce) {
  const PrivateBus bus;
  FakeModemManager manager{bus};
  manager.modems = modem(FakeModemManager::simPath);
  manager.simOperatorName = "Cell Net";
  manager.simOperatorIdentifier = "22801";
  const CarrierInfo expected{{"carrierName", "Cell Net"},
                             {"isoCountryCode", "ch"},
                             {"mobileCountryCode", "228"},
                             {"mobileNetworkCode", "01"}};
  headless::HeadlessPlatform parts;
  Platform platform = parts.platform();
  platform.runLoop = runLoop_;
  const auto nobody = platform.telephony;
  for (const bool knownAtOnce : {false, true}) {
    platform.telephony =
        knownAtOnce ? nobody
                    : std::shared_ptr<Telephony>{std::make_shared<gtk::GtkTelephony>(providers_)};
    platform.userDefaults = std::make_shared<gtk::GtkUserDefaults>(folder_.path("defaults.ini"));
    const Runtime runtime{platform};
    const auto information = XDeviceInformation::create();
    EXPECT_EQ(information->carrierInfo(), knownAtOnce ? expected : CarrierInfo{});
    runUntil([&] { return information->carrierInfo() == expected; });
    EXPECT_EQ(information->carrierInfo(), expected);
  }
}

}  // namespace
}  // namespace tavo::test
