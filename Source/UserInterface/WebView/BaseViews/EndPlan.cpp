#include "UserInterface/WebView/BaseViews/EndPlan.h"

namespace tavo {

EndPlan planEnd(EndCause cause) {
  using Plan = EndPlan;
  switch (cause) {
    case EndCause::userClosed:
      return {.creative = Plan::Creative::told, .content = Plan::Content::removed};
    case EndCause::creativeClosed:
      return {.content = Plan::Content::removed};
    case EndCause::videoDismissed:
      return {};
    case EndCause::failed:
      return {.statusBar = Plan::StatusBar::showWhenOnScreen, .report = Plan::Report::none};
    // Quirk: a host that does not hear of low memory does not hear of the end either; it has asked
    // for neither the cause nor the consequence.
    case EndCause::lowMemory:
      return {.memory = Plan::Memory::released, .report = Plan::Report::bothIfLowMemoryIsHeard};
    case EndCause::adDismissedOnLowMemory:
      return {.report = Plan::Report::lowMemoryThenDismissed};
    case EndCause::adReleased:
      return {.scope = Plan::Scope::whileOnScreen,
              .departure = Plan::Departure::animatedUnlessCovered};
    case EndCause::deviceLocked:
      return {.scope = Plan::Scope::whileOnScreen, .departure = Plan::Departure::atOnce};
  }
  return {};
}

}  // namespace tavo
