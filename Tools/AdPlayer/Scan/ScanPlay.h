#pragma once

#include <gtkmm.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/MovieSlot.h>

#include "AdPlayer/Scan/Probe.h"
#include "AdPlayer/Scan/Recording.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// What to ask which server for, and how to show it.
struct ScanSubject {
  std::string name;    // as it was given
  std::string domain;  // host and delivery path, without scheme
  std::string page;
  std::string position = "Top";
  std::string query{};
  adserver::Placement placement = adserver::Placement::banner;
  Size size{320, 50};
  std::string server{};  // of ours, "http://host:port"; empty for a real one
};

struct ScanSettings {
  Seconds watching{3};   // after the load; a film is watched to its end
  Seconds patience{30};  // for the load
  Seconds longest{90};   // for a film
  Pretence pretence{};
  std::string variation{};  // the pretence in words
  // Ends the play at once; asked after each event. For tests, which know what they wait for.
  std::function<bool(const Recording&)> isEnough{};
};

// Plays one creative in a window of its own, touches nothing, and writes down what can be seen. One
// at a time: it takes the runtime's inspection and its book of pings. Main thread only.
class ScanPlay {
 public:
  // `finished` is called once, in a turn of its own.
  ScanPlay(ScanSubject subject, ScanSettings settings, std::function<void(Recording)> finished);
  ~ScanPlay();
  ScanPlay(const ScanPlay&) = delete;
  ScanPlay& operator=(const ScanPlay&) = delete;

  void start();

 private:
  void loadBanner();
  void loadInterstitial();
  void watchLibrary();
  void loaded();
  void failed(const std::optional<Error>& error);
  void filmEnded();
  void look();
  void measureProcessors();
  void endAfter(Seconds time);
  void endIfEnough();
  void finish();
  [[nodiscard]] Seconds now() const;

  ScanSubject subject_;
  ScanSettings settings_;
  std::function<void(Recording)> finished_;
  std::shared_ptr<RunLoop> runLoop_ = Runtime::current().platform().runLoop;
  Recording recording_;
  Gtk::Window window_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  std::shared_ptr<XAdView> view_;
  std::unique_ptr<gtk::AdSlot> slot_;
  std::unique_ptr<gtk::MovieSlot> movie_;
  std::shared_ptr<XAdInterstitialViewController> interstitial_;
  std::shared_ptr<const XAdViewDelegate> bannerEvents_;
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> interstitialEvents_;
  std::shared_ptr<const InspectionObserver> inspection_;
  std::shared_ptr<const TrackingLedgerObserver> pings_;
  std::map<int, double> processors_;  // seconds used, by the id of an engine's process
  std::map<int, double> before_;      // the same when the play began
  Seconds start_{};
  bool isFilm_ = false;
  bool isOver_ = false;
  Timer end_;
  Timer lookTimer_;
  Timer processorTimer_;
};

}  // namespace tavo::adplayer
