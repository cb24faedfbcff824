#pragma once

#include <memory>
#include <string>
#include <vector>

#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>

#include "Unit/VastFixture.h"

namespace tavo::test {

// A host in memory that shows interstitials: it presents each as soon as it hears that it has
// loaded, and every call of the interstitial is a line.
class InterstitialTest : public VastTest {
 protected:
  InterstitialTest();

  void makeController();
  void loadController() { controller_->loadWithDomainName("ads.example/x", "page", "Bottom1"); }
  // Loads an answer with a new controller, and what happened; `show` forgets it.
  Lines loadedController(const std::string& body);
  void show(const std::string& body);
  void showVideo(const std::string& linearAttributes = {});
  void showPage() { show(htmlAnswer()); }
  // What the page on the screen is told counts as happening; it has said "init".
  void startConversation();

  void present() { root_->presentViewController(controller_, Animated::yes); }
  [[nodiscard]] bool isOnScreen() const { return root_->presentedViewController() != nullptr; }
  [[nodiscard]] headless::HeadlessWebView& page() { return *platform_.webViews->last(); }
  void tapCloseButton();
  // The ad view reports to whoever hears it.
  template <typename Operation, typename... Arguments>
  void fromAdView(Operation operation, const Arguments&... arguments) {
    const auto adView = controller_->xadView();
    adView->delegate.tell(operation, *adView, arguments...);
  }
  // The button where interstitials have it, as the user finds it; null when there is none.
  [[nodiscard]] Button* buttonInCorner();

  std::shared_ptr<XAdInterstitialViewController> controller_;
  std::shared_ptr<XAdInterstitialViewControllerDelegate> hostTable_;  // set anew by makeController
  bool presentsOnLoad_ = true;

 private:
  void fillTable();
  void addVideoLines();
};

}  // namespace tavo::test
