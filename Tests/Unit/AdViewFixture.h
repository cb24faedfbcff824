#pragma once

#include <tavo/Runtime.h>
#include <tavo/ViewController.h>
#include <tavo/XAdView.h>

#include "Headless/HeadlessPlatform.h"
#include "Runtime/NotificationCenter.h"
#include "Scene/Window.h"
#include "Support/Testing.h"

namespace tavo::test {

// A host in memory: a window with one banner, and a list of everything that the outside sees of it
// (requests, host calls, scripts) in order.
class AdViewTest : public testing::Test {
 protected:
  explicit AdViewTest(const Limits& limits = {});
  ~AdViewTest() override;

  // Puts a banner of 320 x 50 into the window.
  void makeBanner(const Rect& frame = {0, 0, 320, 50});
  void load() { banner_->loadWithDomainName("ads.example/x", "page", "Bottom1"); }
  // The server's answer to the banner's requests from now on; an earlier one is forgotten. Without
  // a text it has no body.
  void answer(const std::string& body);
  // Loads that answer, and what happened.
  Lines loaded(const std::string& body);
  // Puts a banner into the window that shows this answer, and forgets what happened on the way.
  void showBanner(const std::string& body, const Rect& frame = {0, 0, 320, 50});
  // The creative sends a command, a while after the one before.
  void creative(const std::string& command);
  void post(std::string_view name);
  // The host lets go of the banner: now, or inside the call of this name.
  void drop();
  void dropsInside(const std::string& call);
  void settle() { platform_.runLoop->runPending(); }
  void advance(double seconds) { platform_.runLoop->advance(Seconds{seconds}); }

  // What happened since the last call, as lines: "GET <url>", "<callback>".
  Lines happened();
  // Adds a line, and lets the host do what it does inside its calls.
  void note(const std::string& line);

  static constexpr const char* adUrl = "http://ads.example/x/sdk/page/@Bottom1";

  headless::HeadlessPlatform platform_;
  Runtime runtime_;
  std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
  std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  std::shared_ptr<XAdView> banner_;
  std::shared_ptr<XAdSlotConfiguration> slot_ = std::make_shared<XAdSlotConfiguration>();
  bool recordsScripts_ = false;  // what pages are told counts as happening, too
  bool mayRender_ = true;        // the host's answers to its questions
  bool mayClick_ = true;
  std::function<void(const std::string&)> onCallback_{};  // runs inside every host call

 private:
  Lines lines_;
  std::shared_ptr<const XAdViewDelegate> events_;
};

[[nodiscard]] std::string imageAnswer(const std::string& fileUrl = "http://cdn.example/a.png");
[[nodiscard]] std::string htmlAnswer(const std::string& html = "<b>ad</b>");
inline constexpr const char* noAdAnswer = R"({"Ad":[]})";

inline const std::string getAd = "GET http://ads.example/x/sdk/page/@Bottom1";
inline const std::string getPicture = "GET http://cdn.example/a.png";
inline const std::string getImpression = "GET http://track.example/i";

}  // namespace tavo::test
