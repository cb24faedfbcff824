#pragma once

namespace tavo {

// Why an interstitial leaves the screen.
enum class EndCause {
  userClosed,              // by the close button, or the key that stands for it
  creativeClosed,          // the page has asked for it
  videoDismissed,          // it is over, or was closed
  failed,                  // a while after the host has heard of the failure
  lowMemory,               // the system has told the controller
  adDismissedOnLowMemory,  // the ad has let go of its content already
  adReleased,              // the ad was taken away below it
  deviceLocked,
};

// How it leaves. Each cause ends an ad once: what comes after the first is ignored.
struct EndPlan {
  // Whether there is anything to end while nobody presents the controller.
  enum class Scope { always, whileOnScreen };
  enum class StatusBar { show, showWhenOnScreen };
  // The creative hears that it is hidden.
  enum class Creative { untold, told };
  enum class Content { stays, removed };
  // At once where somebody is in a hurry, or where two animations would stand above each other.
  enum class Departure { animated, animatedUnlessCovered, atOnce };
  enum class Memory { kept, released };
  // What the host hears once the controller is gone. Who does not hear of low memory does not hear
  // of the end that it brought.
  enum class Report { none, dismissed, lowMemoryThenDismissed, bothIfLowMemoryIsHeard };

  Scope scope = Scope::always;
  StatusBar statusBar = StatusBar::show;
  Creative creative = Creative::untold;
  Content content = Content::stays;
  Departure departure = Departure::animated;
  Memory memory = Memory::kept;  // released also when the ad had ended before
  Report report = Report::dismissed;
  friend bool operator==(const EndPlan&, const EndPlan&) = default;
};

[[nodiscard]] EndPlan planEnd(EndCause cause);

}  // namespace tavo
