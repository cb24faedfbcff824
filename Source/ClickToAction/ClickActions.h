#pragma once

#include <memory>
#include <string>

#include <tavo/ClickToAction.h>
#include <tavo/Url.h>

#include "ClickThrough/OpenSheets.h"
#include "ClickToAction/CalendarAction.h"
#include "ClickToAction/ClickActionsView.h"
#include "ClickToAction/WebClickThrough.h"
#include "Runtime/Environment.h"

namespace tavo {

// Carries out what a click on an ad asks for. Belongs to one ad view. Each action with a URL first
// asks the host; what the system cannot do is left undone without a word. Main thread only.
class ClickActions : public std::enable_shared_from_this<ClickActions> {
 public:
  [[nodiscard]] static std::shared_ptr<ClickActions> create(
      std::shared_ptr<Environment> environment, ClickActionsView& view);

  void openDiallerWithUrl(const Url& url);
  void sendSMSWithUrl(const Url& url);
  void sendEmailWithUrl(const Url& url);
  void makeFaceTimeCallWithUrl(const Url& url);
  void openAppStoreWithURL(const Url& url);
  void createCalendarEvent(const std::string& event);

  // Carries an action out without asking the host; an unknown one does nothing.
  void performClickToAction(ClickToAction action, const ClickToActionParameters& parameters);

  void openUrlInBrowser(const Url& url) { browser_->openUrlInBrowser(url); }
  [[nodiscard]] bool appBrowserOpen() const { return browser_->appBrowserOpen(); }
  // The browser of the last click; null when it is closed.
  [[nodiscard]] const std::shared_ptr<XInAppBrowser>& appBrowser() const {
    return browser_->appBrowser();
  }

  // The ad goes: what its clicks have put on the screen is taken away, and nothing is to follow. A
  // browser that was open reports that it has closed.
  void end();

  // Plays a video over the whole window; the user may close it.
  void handlePlayVideoWithURL(const Url& url);

  // Asks ahead of the first event, where nothing has been decided.
  void checkCalendarAuthorizationStatus() { calendar_->checkCalendarAuthorizationStatus(); }

 private:
  ClickActions(std::shared_ptr<Environment> environment, ClickActionsView& view);

  void askAndPerform(ClickToAction action, const ClickToActionParameters& parameters);
  void makeCallWithParameters(const ClickToActionParameters& parameters);
  void sendSMSWithParamter(const ClickToActionParameters& parameters);
  void sendMailWithParameters(const ClickToActionParameters& parameters);
  void makeFaceTimeCallWithParameters(const ClickToActionParameters& parameters);
  void openStoreWithParameters(const ClickToActionParameters& parameters);
  void openOutside(const Url& asked, const Url& url);
  [[nodiscard]] ViewController* mailPresenter();

  std::shared_ptr<Environment> environment_;
  ClickActionsView& view_;
  OpenSheets sheets_;
  std::shared_ptr<CalendarAction> calendar_;
  std::shared_ptr<WebClickThrough> browser_;
};

}  // namespace tavo
