#include "Gtk/Http/GtkNetworkMonitor.h"

#include <string_view>
#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Http/NetworkReading.h"

namespace tavo::gtk {

namespace {

// GIO repeats its signal without a change, several times for one cable that is pulled.
class FlagsWatch : public NetworkMonitor::Watch {
 public:
  FlagsWatch(std::shared_ptr<const NetworkReading> reading, ReachabilityTarget target,
             std::function<void()> changed)
      : reading_{std::move(reading)},
        target_{std::move(target)},
        changed_{std::move(changed)},
        flags_{reading_->flagsFor(target_)} {
    for (const char* const signal : {"network-changed", "notify::connectivity"}) {
      g_signal_connect_data(reading_->monitor(), signal, G_CALLBACK(fenced<&FlagsWatch::look>),
                            this, nullptr, G_CONNECT_SWAPPED);
    }
  }
  ~FlagsWatch() override { g_signal_handlers_disconnect_by_data(reading_->monitor(), this); }
  FlagsWatch(const FlagsWatch&) = delete;
  FlagsWatch& operator=(const FlagsWatch&) = delete;

 private:
  static void look(FlagsWatch* self) {
    const auto flags = self->reading_->flagsFor(self->target_);
    if (flags == self->flags_) return;
    self->flags_ = flags;
    const auto changed = self->changed_;  // it may end the watch
    changed();
  }

  std::shared_ptr<const NetworkReading> reading_;
  ReachabilityTarget target_;
  std::function<void()> changed_;
  std::optional<std::uint32_t> flags_;
};

}  // namespace

GtkNetworkMonitor::GtkNetworkMonitor(Assumption assumption)
    : GtkNetworkMonitor{GPtr<GNetworkMonitor>::share(g_network_monitor_get_default()), assumption} {
}

GtkNetworkMonitor::GtkNetworkMonitor(GPtr<GNetworkMonitor> monitor, Assumption assumption)
    : reading_{std::make_shared<const NetworkReading>(std::move(monitor),
                                                      assumption == Assumption::reachable)} {}

GtkNetworkMonitor::Assumption GtkNetworkMonitor::assumptionOfEnvironment() {
  const char* const value = g_getenv("TAVO_ASSUME_REACHABLE");
  const bool assumes = value != nullptr && std::string_view{value} == "1";
  return assumes ? Assumption::reachable : Assumption::none;
}

std::optional<std::uint32_t> GtkNetworkMonitor::flagsFor(const ReachabilityTarget& target) const {
  return reading_->flagsFor(target);
}

std::unique_ptr<NetworkMonitor::Watch> GtkNetworkMonitor::watch(const ReachabilityTarget& target,
                                                                std::function<void()> changed) {
  if (!reading_->flagsFor(target)) return nullptr;
  return std::make_unique<FlagsWatch>(reading_, target, std::move(changed));
}

}  // namespace tavo::gtk
