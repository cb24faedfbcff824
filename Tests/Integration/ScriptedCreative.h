#pragma once

#include <glib.h>
#include <gtk/gtk.h>

#include <fstream>
#include <sstream>

#include <tavo/Runtime.h>

#include "AdController/AdGenerator/MraidCommandText.h"
#include "AdController/AdGenerator/XMRAIDEventEmitter.h"
#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Modules/GtkWebModule.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessPlatform.h"
#include "Support/HostLoop.h"
#include "Support/Places.h"
#include "Support/Testing.h"

namespace tavo::test {

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream{text};
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The engine and what it needs, once per process as in a host.
class Engine {
 public:
  static Engine& instance() {
    static Engine engine;
    return engine;
  }

  const std::shared_ptr<gtk::GtkRunLoop> runLoop = std::make_shared<gtk::GtkRunLoop>();
  const headless::HeadlessPlatform platform;
  gtk::GtkWebModule webViews{{.runLoop = runLoop,
                              .userDefaults = platform.userDefaults,
                              .log = platform.log,
                              .cookies = std::make_shared<gtk::GtkCookieStore>(runLoop, ":memory:"),
                              .limits = {}}};

 private:
  Runtime runtime_{platform.platform()};
};

// A creative of Tests/Data/creatives in the real engine with the MRAID script. The test stands
// where the SDK stands: it opens the conversation as the SDK does when a page has loaded, answers
// "init" with a layout report, and writes the other commands down.
class ScriptedCreative : public WebViewClient {
 public:
  static std::shared_ptr<ScriptedCreative> load(const std::string& name,
                                                PlacementType placement = PlacementType::inlined) {
    auto creative = std::make_shared<ScriptedCreative>();
    creative->placement_ = placement;
    creative->view->setClient(creative);
    creative->view->addDocumentStartScript(script());
    creative->view->loadHtml(contentsOf(testData() + "/creatives/" + name + ".html"), {});
    return creative;
  }

  static std::string script() {
    return contentsOf(resources() + "/CorvaneTAVOSDKMRAID.bundle/XMraid.js");
  }

  std::vector<std::string> heard() { return linesOf(evaluate("heard.join('\\n')")); }

  std::string evaluate(const std::string& text) { return askPage(view.get(), text); }

  bool waitForCommands(std::size_t count) {
    return runUntil([&] { return commands.size() >= count; });
  }

  // Until the layout report that makes the creative ready has been sent and heard.
  void waitUntilReady() {
    ASSERT_TRUE(runUntil([&] { return reports > 0; }));
    evaluate("");
  }

  void report(const Rect& current, bool viewable) {
    emitter.setScreenSize({320, 480}, view);
    emitter.setMaxSize({320, 480}, view);
    emitter.setDefaultPosition({0, 430, 320, 50}, view);
    emitter.setCurrentPosition(current, view);
    emitter.setViewable(viewable, view);
    ++reports;
  }

  std::shared_ptr<WebView> view = Engine::instance().webViews.create({0, 0, 320, 50}, {});
  XMRAIDEventEmitter emitter{Engine::instance().runLoop};
  bool answersInit = true;
  Rect layout{0, 430, 320, 50};
  bool viewableAtStart = true;
  std::vector<std::string> commands;  // in the order of their arrival, "init" left out
  int inits = 0;
  int reports = 0;
  int loads = 0;

 private:
  bool webViewShouldStartLoad(WebView& /*webView*/, const Navigation& navigation) override {
    if (navigation.url.scheme() != "mraid") return true;
    if (navigation.url.text() == "mraid://init") {
      ++inits;
      if (answersInit) report(layout, viewableAtStart);
    } else {
      commands.push_back(navigation.url.text());
    }
    return false;
  }

  void webViewDidStartLoad(WebView& /*webView*/) override {}
  void webViewDidFailLoad(WebView& /*webView*/, const Error& error) override {
    ADD_FAILURE() << error.description;
  }
  void webViewProcessDidTerminate(WebView& /*webView*/, const Error& error) override {
    ADD_FAILURE() << error.description;
  }

  void webViewDidFinishLoad(WebView& /*webView*/) override {
    ++loads;
    emitter.setSupported(true, MRAIDFeature::sms, view);
    emitter.setSupported(true, MRAIDFeature::calendar, view);
    emitter.setSupported(true, MRAIDFeature::inlineVideo, view);
    emitter.setSupported(false, MRAIDFeature::tel, view);
    emitter.setSupported(true, MRAIDFeature::storePicture, view);
    emitter.setExpandProperties(XMRAIDExpandProperties{Size{320, 460}}, view);
    emitter.setResizeProperties({}, view);
    emitter.setOrientationProperties({}, view);
    emitter.setPlacementType(placement_, view);
    emitter.setState(MRAIDState::normal, view);
    emitter.setCurrentPosition({0, 0, 320, 50}, view);
    emitter.setViewable(true, view);
    emitter.setScreenSize({320, 460}, view);
    emitter.fireEventForEvent(sizeChangeEventName({320, 460}), view);
    emitter.fireReadyEventForWebView(view);
  }

  PlacementType placement_ = PlacementType::inlined;
};

}  // namespace tavo::test
