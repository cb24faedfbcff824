#include "SoakHost.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <optional>
#include <utility>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/TapRecognizer.h>
#include <tavo/gtk/AdWindow.h>

#include "Services/NetworkMonitor.h"
#include "Support/WebProcesses.h"

namespace tavo::benchmark {

// The system's network, and a switch that turns it off.
class SwitchedNetwork : public NetworkMonitor {
 public:
  explicit SwitchedNetwork(std::shared_ptr<NetworkMonitor> network)
      : network_{std::move(network)} {}

  void set(bool on) {
    on_ = on;
    const auto told = watches_;  // each may end others
    for (const auto& watch : told) {
      if (const auto changed = watch.lock()) (*changed)();
    }
    std::erase_if(watches_, [](const auto& watch) { return watch.expired(); });
  }

  [[nodiscard]] std::optional<std::uint32_t> flagsFor(
      const ReachabilityTarget& target) const override {
    return on_ ? network_->flagsFor(target) : 0;
  }
  [[nodiscard]] std::unique_ptr<Watch> watch(const ReachabilityTarget& target,
                                             std::function<void()> changed) override {
    auto watch = std::make_unique<SwitchedWatch>();
    watch->changed = std::make_shared<std::function<void()>>(changed);
    watch->inner = network_->watch(target, std::move(changed));
    watches_.emplace_back(watch->changed);
    return watch;
  }

 private:
  struct SwitchedWatch : Watch {
    std::shared_ptr<std::function<void()>> changed;
    std::unique_ptr<Watch> inner;
  };

  std::shared_ptr<NetworkMonitor> network_;
  std::vector<std::weak_ptr<std::function<void()>>> watches_;
  bool on_ = true;
};

SoakHost::SoakHost() {
  Limits limits;
  limits.webProcessReloadsPerMinute = 1'000;  // more die here than anywhere
  const auto adjust = [this](Platform& platform) {
    network_ = std::make_shared<SwitchedNetwork>(platform.network);
    platform.network = network_;
  };
  host_ = std::make_unique<test::GtkHost>(TAVO_CAMPAIGNS, adjust, std::string{}, limits);
  player_ = Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
  filmSlot_ = std::make_unique<gtk::MovieSlot>(player_);
  host_->column().prepend(*filmSlot_);
}

SoakHost::~SoakHost() { host_->column().remove(*filmSlot_); }

bool SoakHost::ends(const std::string& campaign, const std::string& call) {
  host_->server().record().clear();  // which would grow
  const auto count = [&] { return std::ranges::count(host_->calls(), call); };
  const auto before = count();
  host_->load(campaign);
  return host_->runUntil([&] { return count() > before; });
}

bool SoakHost::loads(const std::string& campaign) { return ends(campaign, "didLoad"); }

bool SoakHost::expansion() {
  if (!loads("html-banner")) return false;
  // The page says so itself that it may be commanded, a little after it was loaded.
  const auto page = [this] { return host_->banner()->webViewInstance(); };
  if (!host_->runUntil([&] { return page() != nullptr; })) return false;
  for (const auto& [script, call] :
       {std::pair{"mraid.expand()", "didExpand"}, std::pair{"mraid.close()", "didCollapse"}}) {
    const auto count = [&, name = call] { return std::ranges::count(host_->calls(), name); };
    const auto before = count();
    recognizeTap(*page());
    page()->evaluate(script, [](const std::string&) {});
    if (!host_->runUntil([&] { return count() > before; })) return false;
  }
  return true;
}

bool SoakHost::isAnswered(const std::string& campaign) {
  const auto before = host_->calls().size();
  host_->load(campaign);
  return host_->runUntil([&] { return host_->calls().size() > before; });
}

bool SoakHost::failure() {
  constexpr std::array campaigns{"broken-json", "server-error", "no-ad", "empty-ad"};
  return std::ranges::all_of(campaigns, [this](const char* each) { return isAnswered(each); });
}

bool SoakHost::filmInThePlayer() {
  host_->banner()->setMoviePlayerInstance(player_);
  host_->load("vast-preroll");
  const bool played = host_->runUntil([this] { return player_->currentPlaybackTime() > 0.5; });
  host_->makeBanner();
  return played && host_->runUntil(
                       [this] { return player_->playbackState() != MoviePlaybackState::playing; });
}

// Two wrappers, then the film up to its last ping.
bool SoakHost::wrappedFilmToItsEnd() {
  auto& record = host_->server().record();
  record.clear();
  host_->banner()->setMoviePlayerInstance(player_);
  host_->load("vast-wrapped");
  const bool ended = host_->runUntil([&] {
    return std::ranges::any_of(record.requests(adserver::RequestKind::Tracking),
                               [](const auto& ping) { return ping.detail == "second-complete"; });
  });
  host_->makeBanner();
  return ended;
}

bool SoakHost::filmThatIsMissing() {
  host_->banner()->setMoviePlayerInstance(player_);
  const bool answered = isAnswered("vast-missing-target");
  host_->makeBanner();
  return answered;
}

bool SoakHost::interstitial(const std::string& campaign) {
  interstitial_ = XAdInterstitialViewController::create();
  bool loaded = false;
  bool over = false;
  const auto events =
      std::make_shared<XAdInterstitialViewControllerDelegate>(XAdInterstitialViewControllerDelegate{
          .xAdInterstitialDidLoad = [&](XAdInterstitialViewController*) { loaded = true; },
          .xAdInterstitialDidFailWithError = [&](XAdInterstitialViewController&,
                                                 const std::optional<Error>&) { over = true; },
          .xAdInterstitialDismissed = [&](XAdInterstitialViewController&) { over = true; }});
  interstitial_->delegate.set(events);
  const std::string server = host_->server().baseUrl();
  interstitial_->loadWithDomainName(server.substr(std::string_view{"http://"}.size()) + "/ads",
                                    campaign, "Full");
  step_ = "loading";
  bool ended = host_->runUntil([&] { return loaded || over; });
  if (loaded) {
    step_ = "presented";
    const auto root = gtk::rootViewControllerOf(host_->window());
    root->presentViewController(interstitial_, Animated::no);
    if (root->presentedViewController() != interstitial_.get()) step_ = "refused by the window";
    ended = host_->waitForFrames() && ended;
    if (!over) interstitial_->closeInterstitialAd();
    ended = host_->runUntil([&] { return over; }) && ended;
  }
  interstitial_.reset();
  return ended;
}

bool SoakHost::newSlot() {
  host_->makeBanner();
  return loads("html-banner");
}

bool SoakHost::droppedLoad() {
  host_->load("html-banner");
  const bool drawn = host_->waitForFrames(host_->window(), 1);
  host_->makeBanner();
  return drawn && loads("image-banner");
}

// A page's process is killed, as the system does when memory is short: the host hears of it, and
// the next load works. One that has only just been started would take the host along
// (docs/security-engine-start.md): those are left alone.
bool SoakHost::deadPage() {
  const auto page = [this] { return host_->banner()->webViewInstance(); };
  if (!loads("html-banner") || !host_->runUntil([&] { return page() != nullptr; })) return false;
  const auto heard = [this] { return std::ranges::count(host_->calls(), "didFail 1101"); };
  const auto before = heard();
  const auto processes = test::webProcesses();
  constexpr int framesToStart = 90;
  if (!host_->waitForFrames(host_->window(), framesToStart)) return false;
  for (const int process : processes) kill(process, SIGKILL);
  return host_->runUntil([&] { return heard() > before; }) && isAnswered("html-banner");
}

bool SoakHost::lostNetwork() {
  network_->set(false);
  const bool failed = ends("image-banner", "didFail 1003");
  const auto loads = [this] { return std::ranges::count(host_->calls(), "didLoad"); };
  const auto before = loads();
  network_->set(true);  // the slot loads by itself then
  return host_->runUntil([&] { return loads() > before; }) && failed;
}

bool SoakHost::turnedWindow() {
  const int width = host_->window().get_width();
  const int height = host_->window().get_height();
  host_->window().set_default_size(height, width);
  return host_->runUntil([&] { return host_->window().get_width() == height; });
}

}  // namespace tavo::benchmark
