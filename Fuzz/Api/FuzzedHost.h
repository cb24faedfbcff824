#pragma once

#include <memory>
#include <optional>

#include <tavo/Runtime.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>

#include "Api/Bytes.h"
#include "Api/ScriptedServer.h"
#include "Headless/HeadlessPlatform.h"
#include "Scene/Window.h"

namespace tavo::fuzz {

// A host that does with its slot and its interstitial whatever the input says, in any order, and
// lets creatives, people, servers and the system do the same. It ends the program when a report
// comes for an object that is gone, or when something is left behind at the end.
class FuzzedHost {
 public:
  explicit FuzzedHost(Bytes bytes);
  ~FuzzedHost();
  FuzzedHost(const FuzzedHost&) = delete;
  FuzzedHost& operator=(const FuzzedHost&) = delete;

  void run();

 private:
  void makeTables();
  void makeBanner();
  void makeInterstitial();
  // What the host does inside a report: mostly nothing.
  void heard();

  void act();
  void actOnBanner();
  void actOnInterstitial();
  void actOnCreative();
  void actOnPlayer();
  void actAsPerson();
  void actAsSystem();
  void letTimePass();
  void end();

  Bytes bytes_;
  headless::HeadlessPlatform platform_;
  ScriptedServer server_{platform_};
  std::unique_ptr<Runtime> runtime_ = std::make_unique<Runtime>(platform_.platform());
  std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
  std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  std::shared_ptr<XAdSlotConfiguration> settings_ = std::make_shared<XAdSlotConfiguration>();
  std::shared_ptr<headless::HeadlessMoviePlayer> player_;
  std::shared_ptr<XAdView> banner_;
  std::shared_ptr<XAdInterstitialViewController> interstitial_;
  std::shared_ptr<const XAdViewDelegate> bannerEvents_;
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> interstitialEvents_;
};

}  // namespace tavo::fuzz
