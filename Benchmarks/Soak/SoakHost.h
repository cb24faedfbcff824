#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/gtk/MovieSlot.h>

#include "Support/GtkHost.h"

namespace tavo::benchmark {

class SwitchedNetwork;

// A host with a banner, a film of its own and interstitials, and the things that happen to it. Each
// operation turns the loop until what it began has ended, and returns whether it did.
class SoakHost {
 public:
  SoakHost();
  ~SoakHost();

  [[nodiscard]] bool picture() { return loads("image-banner"); }
  [[nodiscard]] bool page() { return loads("html-banner"); }
  [[nodiscard]] bool expansion();
  [[nodiscard]] bool failure();
  [[nodiscard]] bool filmInThePlayer();
  [[nodiscard]] bool wrappedFilmToItsEnd();
  [[nodiscard]] bool filmThatIsMissing();
  [[nodiscard]] bool interstitialPage() { return interstitial("interstitial-html"); }
  [[nodiscard]] bool interstitialWithOwnClose() { return interstitial("interstitial-mraid"); }
  [[nodiscard]] bool interstitialFilm() { return interstitial("interstitial-video"); }
  [[nodiscard]] bool newSlot();
  [[nodiscard]] bool droppedLoad();
  [[nodiscard]] bool deadPage();
  [[nodiscard]] bool lostNetwork();
  [[nodiscard]] bool turnedWindow();

  // How far the last interstitial has come.
  [[nodiscard]] const std::string& step() const { return step_; }

 private:
  [[nodiscard]] bool loads(const std::string& campaign);
  [[nodiscard]] bool isAnswered(const std::string& campaign);
  [[nodiscard]] bool ends(const std::string& campaign, const std::string& call);
  [[nodiscard]] bool interstitial(const std::string& campaign);

  std::shared_ptr<SwitchedNetwork> network_;
  std::unique_ptr<test::GtkHost> host_;
  std::shared_ptr<MoviePlayer> player_;
  std::unique_ptr<gtk::MovieSlot> filmSlot_;
  std::shared_ptr<XAdInterstitialViewController> interstitial_;
  std::string step_;
};

}  // namespace tavo::benchmark
