#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>

#include "AdPlayer/Events/EventLog.h"
#include "AdPlayer/Source/Placement.h"
#include "AdPlayer/Stage/Phone.h"

namespace tavo::adplayer {

enum class Outcome { none, loaded, failed };
[[nodiscard]] std::string_view nameOf(Outcome outcome);

// One ad on the phone, from its request to its end, written down in a log: what a host does, and
// what it is told. A new load takes the last ad's place. Main thread only, in a running runtime.
class Session {
 public:
  Session(Gtk::Window& window, Phone& phone, EventLog& log);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // The film that the host's own player has before a pre-roll; empty: none.
  Url film{};
  // Called when the outcome is known, in a turn of its own.
  std::function<void(Outcome)> concluded{};

  // Empties the log and asks for the ad; a plan for the standards mode has it, whatever `settings`
  // say.
  void load(const PlayPlan& plan, const std::shared_ptr<XAdSlotConfiguration>& settings);
  // Takes the ad away.
  void end();
  // What a person's close does: an interstitial leaves, an expanded ad collapses.
  void close();

  [[nodiscard]] Outcome outcome() const { return outcome_; }
  // What the library took the ad for, in words; empty before the outcome.
  [[nodiscard]] std::string classification() const;
  // The ad's view; null before a load, and for an interstitial that is gone.
  [[nodiscard]] std::shared_ptr<XAdView> adView() const;
  // The page of the creative; null when it has none.
  [[nodiscard]] std::shared_ptr<WebView> page() const;

 private:
  void loadBanner(const PlayPlan& plan, const std::shared_ptr<XAdSlotConfiguration>& settings);
  void loadInterstitial(const PlayPlan& plan,
                        const std::shared_ptr<XAdSlotConfiguration>& settings);
  void present();
  void conclude(Outcome outcome, const std::optional<Error>& error);

  Gtk::Window& window_;
  Phone& phone_;
  EventLog& log_;
  Outcome outcome_ = Outcome::none;
  int load_ = 0;
  std::shared_ptr<XAdInterstitialViewController> interstitial_;
  std::shared_ptr<const XAdViewDelegate> bannerEvents_;
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> interstitialEvents_;
};

}  // namespace tavo::adplayer
