#pragma once

#include <memory>
#include <optional>

#include <tavo/WebView.h>

#include "AdController/AdGenerator/AdViewIdentity.h"
#include "AdController/AdGenerator/MraidPlace.h"
#include "Runtime/Environment.h"
#include "Services/RunLoop.h"

namespace tavo {

// Where an ad stands and whether it can be seen. A page that nobody sees rests. Belongs to one ad
// view; main thread only.
class AdPlace {
 public:
  AdPlace(std::shared_ptr<Environment> environment, AdViewIdentity& view)
      : environment_{std::move(environment)}, view_{view} {}

  // The part of the ad view that the host shows, in the view's coordinates. Where nobody says, all
  // that lies in the window.
  void setShownPart(const Rect& part) { shown_ = part; }

  // What a page in `container` is told. `isElsewhere`: another page has the screen for this one.
  [[nodiscard]] MraidPlace report(MRAIDState state, View& container, bool isElsewhere) const;

  // Lets a page rest that has not been seen for a while, and wakes it at once.
  void follow(const std::shared_ptr<WebView>& page, bool isSeen);
  // The same by what can be seen of it where it stands.
  void follow(const std::shared_ptr<WebView>& page);
  void hide(const std::shared_ptr<WebView>& page);
  void show(const std::shared_ptr<WebView>& page);

 private:
  [[nodiscard]] bool isSeen(View& container) const;

  const std::shared_ptr<Environment> environment_;
  AdViewIdentity& view_;
  std::optional<Rect> shown_;
  Timer rest_;
};

}  // namespace tavo
