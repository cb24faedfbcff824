#include "Unit/InterstitialFixture.h"

#include <tavo/TapRecognizer.h>

#include "Runtime/NotificationCenter.h"

namespace tavo::test {

namespace {

using Controller = XAdInterstitialViewController;

std::string text(const std::optional<Error>& error) {
  return error ? std::to_string(error->code) + " " + error->description : "none";
}

}  // namespace

InterstitialTest::InterstitialTest() {
  platform_.bundle->files["/bundle/closebutton30png.png"] = "image 30x30";
}

void InterstitialTest::fillTable() {
  hostTable_ = std::make_shared<XAdInterstitialViewControllerDelegate>();
  auto& table = *hostTable_;
  table.xAdInterstitialDidLoad = [this](Controller* controller) {
    note(controller != nullptr ? "didLoad" : "didLoad mediated");
    if (presentsOnLoad_ && controller_ && controller != nullptr) present();
  };
  table.xAdInterstitialDidFailWithError = [this](Controller&, const std::optional<Error>& error) {
    note("didFail " + text(error));
  };
  table.xAdInterstitialDismissed = [this](Controller&) { note("dismissed"); };
  table.xAdInterstitialDidDismissOnMemoryWarning = [this](Controller&) {
    note("didDismissOnMemoryWarning");
  };
  table.xAdInterstitialWillOpenInInAppBrowser = [this](Controller&) { note("willOpenBrowser"); };
  table.xAdInterstitialWillCloseInAppBrowser = [this](Controller&) { note("willCloseBrowser"); };
  table.xAdInterstitialWillLeaveApplication = [this](Controller&) { note("willLeave"); };
  table.xAdInterstitialViewControllerShouldDisplayAdOnWebViewFinishRender = [this](Controller&,
                                                                                   WebView&) {
    note("shouldDisplay?");
    return mayRender_;
  };
  table.xAdInterstitialViewControllerShouldHandleClickToAction =
      [this](Controller&, ClickToAction action, const ClickToActionParameters&) {
        note("shouldHandle? " + std::to_string(static_cast<int>(action)));
        return false;
      };
  table.xAdInterstitialViewControllerShouldHandleCustomURL = [this](Controller&, const Url& url) {
    note("customURL " + url.text());
  };
  addVideoLines();
}

void InterstitialTest::addVideoLines() {
  auto& table = *hostTable_;
  const auto line = [this](const char* text) { return [this, text](Controller&) { note(text); }; };
  table.xAdInterstitialDidClick = line("didClick");
  table.xAdInterstitialDidEnterFullScreen = line("didEnterFullScreen");
  table.xAdInterstitialDidExitFullScreen = line("didExitFullScreen");
  table.xAdInterstitialDidSkipVideo = line("didSkip");
  table.xAdInterstitialDidPauseVideo = line("didPause");
  table.xAdInterstitialDidResume = line("didResume");
  table.xAdInterstitialDidRewind = line("didRewind");
  table.xAdInterstitialDidFinishQuartile = [this](Controller&, int quartile) {
    note("quartile " + std::to_string(quartile));
  };
}

void InterstitialTest::makeController() {
  if (root_->presentedViewController() != nullptr) root_->dismissViewController(Animated::no);
  fillTable();
  controller_ = Controller::create();
  controller_->slotConfiguration = slot_;
  controller_->delegate.set(hostTable_);
}

void InterstitialTest::show(const std::string& body) {
  loadedController(body);
  advance(0.2);
  happened();
}

Lines InterstitialTest::loadedController(const std::string& body) {
  makeController();
  answer(body);
  loadController();
  settle();
  return happened();
}

void InterstitialTest::startConversation() {
  recordsScripts_ = true;
  page().onScript = platform_.webViews->onScript;
  creative("init");
  happened();
}

void InterstitialTest::showVideo(const std::string& linearAttributes) {
  show(vastAnswer(VastDocument{.linearAttributes = linearAttributes}.text()));
}

Button* InterstitialTest::buttonInCorner() {
  return dynamic_cast<Button*>(window_->hitTest({window_->frame().width - 20, 28}));
}

void InterstitialTest::tapCloseButton() {
  deliverTap(*window_, {window_->frame().width - 20, 28});
  settle();
}

}  // namespace tavo::test
