#pragma once

#include <memory>
#include <optional>
#include <string>

#include <tavo/ClickToAction.h>

#include "ClickThrough/OpenSheets.h"
#include "ClickToAction/ClickActionsView.h"
#include "Runtime/Environment.h"
#include "Services/Composers.h"

namespace tavo {

// Puts an event of a creative's into the user's calendar: asks for access, shows the event to the
// user, saves it. What goes wrong is told to the creative. Main thread only.
class CalendarAction : public std::enable_shared_from_this<CalendarAction> {
 public:
  [[nodiscard]] static std::shared_ptr<CalendarAction> create(
      std::shared_ptr<Environment> environment, ClickActionsView& view);

  // The creative's description as parameters; none, after a report, when it cannot be read.
  [[nodiscard]] std::optional<ClickToActionParameters> parametersOf(const std::string& event);

  void createCalendarEventWithParamter(const ClickToActionParameters& parameters);

  // Takes an open editor away; one whose access is still being asked for does not come any more.
  void end() {
    ++ad_;
    sheets_.dismissAll();
  }

  // Asks for access in the background, where nothing has been decided.
  void checkCalendarAuthorizationStatus();

 private:
  CalendarAction(std::shared_ptr<Environment> environment, ClickActionsView& view)
      : environment_{std::move(environment)}, view_{view} {}

  [[nodiscard]] Date today() const;
  void accessAnswered(bool granted, const CalendarEvent& event);
  void presentEditor(ViewController& presenter, const CalendarEvent& event);
  void editorFinished(EventEditAction action, const CalendarEvent& event);
  void closeEditor();
  void report(std::string_view message);

  std::shared_ptr<Environment> environment_;
  ClickActionsView& view_;
  OpenSheets sheets_;
  std::weak_ptr<ViewController> editor_;
  int ad_ = 0;  // counts the ads that have ended
};

}  // namespace tavo
