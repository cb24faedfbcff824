#include "ClickToAction/ClickActions.h"

#include "ClickThrough/OpenSheets.h"
#include "ClickToAction/ClickUrls.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/Application.h"
#include "UserInterface/Movie/MovieViewController.h"
#include "Values/Text.h"

namespace tavo {

namespace {

Url commandUrl(const ClickToActionParameters& parameters) {
  const auto found = parameters.find(parameterKeys::commandUrl);
  const auto* url = found == parameters.end() ? nullptr : std::get_if<Url>(&found->second);
  return url == nullptr ? Url{} : *url;
}

std::string text(const ClickToActionParameters& parameters, std::string_view key) {
  const auto found = parameters.find(key);
  const auto* value =
      found == parameters.end() ? nullptr : std::get_if<std::string>(&found->second);
  return value == nullptr ? std::string{} : *value;
}

ClickToActionParameters withCommandUrl(const Url& url) {
  return {{std::string{parameterKeys::commandUrl}, url}};
}

std::string_view nameOf(MessageComposeResult result) {
  switch (result) {
    case MessageComposeResult::cancelled:
      return "cancelled";
    case MessageComposeResult::sent:
      return "sent";
    case MessageComposeResult::failed:
      return "failed";
  }
  return {};
}

std::string_view nameOf(MailComposeResult result) {
  switch (result) {
    case MailComposeResult::cancelled:
      return "cancelled";
    case MailComposeResult::saved:
      return "saved";
    case MailComposeResult::sent:
      return "sent";
    case MailComposeResult::failed:
      return "failed";
  }
  return {};
}

}  // namespace

std::shared_ptr<ClickActions> ClickActions::create(std::shared_ptr<Environment> environment,
                                                   ClickActionsView& view) {
  return std::shared_ptr<ClickActions>{new ClickActions{std::move(environment), view}};
}

ClickActions::ClickActions(std::shared_ptr<Environment> environment, ClickActionsView& view)
    : environment_{std::move(environment)},
      view_{view},
      calendar_{CalendarAction::create(environment_, view)},
      browser_{WebClickThrough::create(environment_, view)} {}

void ClickActions::end() {
  browser_->end();
  calendar_->end();
  sheets_.dismissAll();
}

void ClickActions::openDiallerWithUrl(const Url& url) {
  const OperationLog log{"-[XAdView openDiallerWithUrl:]"};
  askAndPerform(ClickToAction::phone, withCommandUrl(url));
}

void ClickActions::sendSMSWithUrl(const Url& url) {
  const OperationLog log{"-[XAdView sendSMSWithUrl:]"};
  askAndPerform(ClickToAction::sms, withCommandUrl(url));
}

void ClickActions::sendEmailWithUrl(const Url& url) {
  const OperationLog log{"-[XAdView sendEmailWithUrl:]"};
  const auto parameters = parameterDictionaryFromURL(url);
  const auto value = [&](std::string_view key) {
    const auto found = parameters.find(key);
    return found == parameters.end() ? std::string{} : found->second;
  };
  askAndPerform(ClickToAction::email,
                {{std::string{parameterKeys::mailRecipient}, value("recipient")},
                 {std::string{parameterKeys::mailSubject}, value("subject")},
                 {std::string{parameterKeys::mailBody}, value("body")}});
}

void ClickActions::makeFaceTimeCallWithUrl(const Url& url) {
  const OperationLog log{"-[XAdView makeFaceTimeCallWithUrl:]"};
  askAndPerform(ClickToAction::faceTime, withCommandUrl(url));
}

void ClickActions::openAppStoreWithURL(const Url& url) {
  const OperationLog log{"-[XAdView openAppStoreWithURL:]"};
  askAndPerform(ClickToAction::appStore, withCommandUrl(url));
}

void ClickActions::createCalendarEvent(const std::string& event) {
  const OperationLog log{"-[XAdView createCalendarEvent:]"};
  const auto parameters = calendar_->parametersOf(event);
  if (parameters) askAndPerform(ClickToAction::calendar, *parameters);
}

void ClickActions::askAndPerform(ClickToAction action, const ClickToActionParameters& parameters) {
  const auto self = shared_from_this();
  const auto held = view_.hold();
  if (!held || !view_.shouldHandleClickToAction(action, parameters)) return;
  performClickToAction(action, parameters);
}

void ClickActions::performClickToAction(ClickToAction action,
                                        const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView performClickToAction:parameters:]"};
  switch (action) {
    case ClickToAction::phone:
      return makeCallWithParameters(parameters);
    case ClickToAction::sms:
      return sendSMSWithParamter(parameters);
    case ClickToAction::email:
      return sendMailWithParameters(parameters);
    case ClickToAction::faceTime:
      return makeFaceTimeCallWithParameters(parameters);
    case ClickToAction::appStore:
      return openStoreWithParameters(parameters);
    case ClickToAction::calendar:
      return calendar_->createCalendarEventWithParamter(parameters);
  }
}

void ClickActions::makeCallWithParameters(const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView makeCallWithParameters:]"};
  openOutside(Url::parse("tel:"), commandUrl(parameters));
}

void ClickActions::makeFaceTimeCallWithParameters(const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView makeFaceTimeCallWithParameters:]"};
  openOutside(Url::parse("facetime:"), commandUrl(parameters));
}

void ClickActions::openStoreWithParameters(const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView openStoreWithParameters:]"};
  openOutside(commandUrl(parameters), commandUrl(parameters));
}

// Whether the system can is asked of `asked`: the plain scheme, or the URL itself.
void ClickActions::openOutside(const Url& asked, const Url& url) {
  auto& application = *environment_->platform().application;
  if (!application.canOpenUrl(asked) || !application.openUrl(url)) return;
  view_.willLeaveApplication();
}

void ClickActions::sendSMSWithParamter(const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView sendSMSWithParamter:]"};
  const auto& composers = environment_->platform().composers;
  auto* presenter = sheetPresenter(view_);
  if (!composers->canSendText() || presenter == nullptr) return;
  const auto sheet = std::make_shared<std::weak_ptr<ViewController>>();
  const auto composer = composers->messageComposer(
      messageFromUrl(commandUrl(parameters)), [sheet](MessageComposeResult result) {
        const OperationLog finished{"-[XAdView messageComposeViewController:didFinishWithResult:]"};
        if (nameOf(result).empty()) return;
        dismissSheet(*sheet, Animated::yes);
      });
  *sheet = composer;
  sheets_.present(*presenter, composer);
}

// The expanded controller has nothing on the screen to present from while the ad is not expanded;
// a mail of such a banner stands above the banner's own controller instead of being lost.
ViewController* ClickActions::mailPresenter() {
  if (view_.placementType() == PlacementType::interstitial) return view_.currentViewController();
  auto* expanded = view_.expandedViewController();
  const bool onScreen = expanded != nullptr && expanded->view()->window() != nullptr;
  return onScreen ? expanded : view_.currentViewController();
}

void ClickActions::sendMailWithParameters(const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView sendMailWithParameters:]"};
  const auto& composers = environment_->platform().composers;
  auto* presenter = mailPresenter();
  if (presenter == nullptr) return;
  const MailDraft draft{.recipients = {text(parameters, parameterKeys::mailRecipient)},
                        .subject = text(parameters, parameterKeys::mailSubject),
                        .body = text(parameters, parameterKeys::mailBody)};
  const auto sheet = std::make_shared<std::weak_ptr<ViewController>>();
  const auto composer = composers->mailComposer(draft, [sheet](MailComposeResult result) {
    const OperationLog finished{"-[XAdView mailComposeController:didFinishWithResult:error:]"};
    finished.debug("\n\nMail ", nameOf(result));
    dismissSheet(*sheet, Animated::yes);
  });
  *sheet = composer;
  sheets_.present(*presenter, composer);
}

void ClickActions::handlePlayVideoWithURL(const Url& url) {
  const OperationLog log{"-[XAdView handlePlayVideoWithURL:]"};
  if (url.empty()) return;
  const auto player = MovieViewController::create(environment_, url, view_.adFrame());
  if (view_.state() == MRAIDState::expanded) {
    // Quirk: above an expanded ad the user starts the video.
    if (auto* expanded = view_.expandedViewController()) {
      sheets_.present(*expanded, player);
    }
    return;
  }
  const bool isInterstitial = view_.placementType() == PlacementType::interstitial &&
                              view_.mobileAdTypes() == MobileAdTypes::interstitial;
  auto* presenter =
      isInterstitial ? view_.currentViewController() : view_.windowRootViewController();
  if (presenter == nullptr) return;
  sheets_.present(*presenter, player);
  player->play();
}

}  // namespace tavo
