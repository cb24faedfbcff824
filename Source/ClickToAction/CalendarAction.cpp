#include "ClickToAction/CalendarAction.h"

#include "ClickThrough/OpenSheets.h"
#include "ClickToAction/CalendarClick.h"
#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Services/CalendarAccess.h"
#include "Services/RunLoop.h"

namespace tavo {

std::shared_ptr<CalendarAction> CalendarAction::create(std::shared_ptr<Environment> environment,
                                                       ClickActionsView& view) {
  return std::shared_ptr<CalendarAction>{new CalendarAction{std::move(environment), view}};
}

Date CalendarAction::today() const { return environment_->platform().runLoop->today(); }

void CalendarAction::report(std::string_view message) {
  view_.reportErrorMessage(message, "createCalendarEvent");
}

std::optional<ClickToActionParameters> CalendarAction::parametersOf(const std::string& event) {
  auto parameters = calendarParameters(event, today());
  if (!parameters) report("Unable to parse event data.");
  return parameters;
}

void CalendarAction::createCalendarEventWithParamter(const ClickToActionParameters& parameters) {
  const OperationLog log{"-[XAdView createCalendarEventWithParamter:]"};
  const auto event = calendarEvent(parameters, today());
  const bool isInterstitial = view_.placementType() == PlacementType::interstitial;
  if ((isInterstitial ? view_.currentViewController() : view_.windowRootViewController()) ==
      nullptr) {
    return;
  }
  const auto& platform = environment_->platform();
  if (!platform.calendarAccess->canRequestAccess()) {
    report("Access denied.");
    platformLog("Error opening calendar: Access Denied", LogLevel::warning);
    return;
  }
  platform.calendarAccess->requestAccess(
      [weak = weak_from_this(), runLoop = platform.runLoop, ad = ad_, event](bool granted) {
        runLoop->post([weak, granted, ad, event] {
          const auto self = weak.lock();
          if (self && self->ad_ == ad) self->accessAnswered(granted, event);
        });
      });
}

void CalendarAction::accessAnswered(bool granted, const CalendarEvent& event) {
  const auto held = view_.hold();
  if (!held || !granted) return;
  const bool isInterstitial = view_.placementType() == PlacementType::interstitial;
  ViewController* presenter = nullptr;
  switch (view_.state()) {
    case MRAIDState::normal:
    case MRAIDState::resized:
      presenter = isInterstitial ? view_.currentViewController() : view_.windowRootViewController();
      break;
    case MRAIDState::expanded:
      presenter = view_.expandedViewController();
      break;
    default:
      break;
  }
  if (presenter == nullptr) return;
  view_.setCalendarReExpand(view_.state() == MRAIDState::expanded);
  presentEditor(*presenter, event);
}

void CalendarAction::presentEditor(ViewController& presenter, const CalendarEvent& event) {
  const auto& composers = environment_->platform().composers;
  const auto editor = composers->eventEditor(
      event, [weak = weak_from_this()](EventEditAction action, const CalendarEvent& edited) {
        if (const auto self = weak.lock()) self->editorFinished(action, edited);
      });
  editor_ = editor;
  sheets_.present(presenter, editor);
}

void CalendarAction::editorFinished(EventEditAction action, const CalendarEvent& event) {
  const OperationLog log{"-[XAdView eventEditViewController:didCompleteWithAction:]"};
  const auto held = view_.hold();
  if (!held) return dismissSheet(editor_, Animated::yes);
  if (action == EventEditAction::saved) {
    environment_->platform().calendarAccess->save(
        event, [weak = weak_from_this()](const std::optional<Error>& error) {
          const auto self = weak.lock();
          const auto view = self ? self->view_.hold() : nullptr;
          if (view && error) self->report(error->description);
        });
  } else {
    report("User canceled.");
  }
  closeEditor();
}

void CalendarAction::closeEditor() {
  const bool expandsAgain = view_.calendarReExpand();
  view_.setCalendarReExpand(false);
  dismissSheet(editor_, expandsAgain ? Animated::no : Animated::yes);
  // A creative may have closed itself in the meantime; its full screen would be empty.
  if (expandsAgain && view_.state() == MRAIDState::expanded) view_.presentExpandView();
}

void CalendarAction::checkCalendarAuthorizationStatus() {
  const OperationLog log{"-[XAdView checkCalendarAuthorizationStatus]"};
  const auto& calendar = environment_->platform().calendarAccess;
  if (calendar->authorization() != CalendarAuthorization::notDetermined) return;
  calendar->requestAccess([](bool granted) {
    platformLog("Calendar Authorized: " + std::to_string(static_cast<int>(granted)));
  });
}

}  // namespace tavo
