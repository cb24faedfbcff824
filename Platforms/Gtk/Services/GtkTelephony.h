#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Gtk/Services/NetworkCountries.h"
#include "Services/Telephony.h"

namespace tavo::gtk {

// The mobile network as ModemManager knows it, asked over the system's message bus: the home
// network of the SIM, or, where the SIM does not name it, the network that the modem is registered
// with while that is the home network. ModemManager knows no ISO country code: it comes from the
// distribution's list of networks, where that is installed. Nothing is started for a question: a
// machine without a running ModemManager has no modem.
class GtkTelephony : public Telephony {
 public:
  explicit GtkTelephony(std::string providers = providerDatabase)
      : providers_{std::move(providers)} {}

  // Waits for the bus for two seconds at the most.
  [[nodiscard]] std::optional<Carrier> subscriberCarrier() const override;

 private:
  std::string providers_;  // the file with the list of networks
};

// An operator as ModemManager writes it: `identifier` is the country code of three digits followed
// by the network code of two or three. Texts that are empty or not of that form tell nothing.
[[nodiscard]] Carrier carrierOf(const char* name, const char* identifier);

}  // namespace tavo::gtk
