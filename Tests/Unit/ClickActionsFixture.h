#pragma once

#include "ClickThrough/AppStore.h"
#include "ClickToAction/ClickActions.h"
#include "Scene/Window.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {

// A view for click actions that a test sets up field by field, and what was asked of it, as lines.
class FakeClickView : public ClickActionsView {
 public:
  [[nodiscard]] std::shared_ptr<void> hold() override { return alive; }
  [[nodiscard]] View& sceneView() override { return *scene; }
  [[nodiscard]] MRAIDState state() const override { return mraidState; }
  [[nodiscard]] PlacementType placementType() const override { return placement; }
  [[nodiscard]] MobileAdTypes mobileAdTypes() const override { return type; }
  [[nodiscard]] MobileAdSubTypes mobileAdSubTypes() const override { return subType; }
  [[nodiscard]] std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const override {
    return slot;
  }
  [[nodiscard]] Rect adFrame() const override { return {0, 0, 320, 50}; }
  [[nodiscard]] ViewController* currentViewController() const override { return current; }
  [[nodiscard]] ViewController* windowRootViewController() override { return root; }
  [[nodiscard]] ViewController* expandedViewController() override { return expanded; }
  [[nodiscard]] bool calendarReExpand() const override { return reExpands; }
  void setCalendarReExpand(bool reExpand) override { reExpands = reExpand; }
  void presentExpandView() override { lines.emplace_back("presentExpandView"); }
  void appBrowserClosed() override { lines.emplace_back("appBrowserClosed"); }
  [[nodiscard]] bool shouldHandleClickToAction(ClickToAction action,
                                               const ClickToActionParameters& parameters) override {
    lines.push_back("asked " + std::to_string(static_cast<int>(action)));
    asked = parameters;
    return allows;
  }
  void willOpenInInAppBrowser() override { lines.emplace_back("willOpenInInAppBrowser"); }
  void willLeaveApplication() override { lines.emplace_back("willLeaveApplication"); }
  void reportErrorMessage(std::string_view message, std::string_view action) override {
    lines.push_back("error " + std::string{message} + " for " + std::string{action});
  }

  std::shared_ptr<void> alive = std::make_shared<int>();
  std::shared_ptr<View> scene = std::make_shared<View>();
  MRAIDState mraidState = MRAIDState::normal;
  PlacementType placement = PlacementType::inlined;
  MobileAdTypes type = MobileAdTypes::banner;
  MobileAdSubTypes subType = MobileAdSubTypes::richMediaBanner;
  std::shared_ptr<XAdSlotConfiguration> slot = std::make_shared<XAdSlotConfiguration>();
  ViewController* current = nullptr;
  ViewController* root = nullptr;
  ViewController* expanded = nullptr;
  bool reExpands = false;
  bool allows = true;
  ClickToActionParameters asked;
  std::vector<std::string> lines;
};

// Click actions of such a view, in a window with three controllers that can each present.
class ClickActionsTest : public TransportTest {
 protected:
  ClickActionsTest() {
    window_->setRootViewController(root_);
    for (const auto& controller : {current_, expanded_}) {
      root_->view()->addSubview(controller->view());
    }
    view_.current = current_.get();
    view_.root = root_.get();
    view_.expanded = expanded_.get();
    AppStoreConfiguration::sharedInstance() = {.hosts = {"store.example", "shop.example"},
                                               .productPagePrefix = "http://store.example/id"};
    for (const char* scheme : {"tel", "facetime", "sms", "mailto"}) {
      platform_.application->openableSchemes.insert(scheme);
    }
  }

  void settle() { platform_.runLoop->runPending(); }
  // What was asked of the view since the last call.
  std::vector<std::string> happened() { return std::exchange(view_.lines, {}); }
  // Who presents a sheet now: "current", "root", "expanded", all of them, or nothing.
  [[nodiscard]] std::string presenters() const {
    std::string names;
    if (current_->presentedViewController() != nullptr) names += "current";
    if (root_->presentedViewController() != nullptr) names += "root";
    if (expanded_->presentedViewController() != nullptr) names += "expanded";
    return names;
  }
  [[nodiscard]] std::vector<std::string> opened() const {
    std::vector<std::string> urls;
    for (const auto& url : platform_.application->openedUrls) urls.push_back(url.text());
    return urls;
  }

  const std::shared_ptr<Window> window_ = std::make_shared<Window>(Rect{0, 0, 320, 480});
  const std::shared_ptr<ViewController> root_ = std::make_shared<ViewController>();
  const std::shared_ptr<ViewController> current_ = std::make_shared<ViewController>();
  const std::shared_ptr<ViewController> expanded_ = std::make_shared<ViewController>();
  FakeClickView view_;
  std::shared_ptr<ClickActions> actions_ = ClickActions::create(runtime_.environment(), view_);
};

}  // namespace tavo::test
