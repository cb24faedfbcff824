#pragma once

#include <memory>
#include <utility>

#include <tavo/View.h>
#include <tavo/WebView.h>

#include "Services/RunLoop.h"

namespace tavo {

// The line that grows while a page loads, and the end of a load that stands still. Main thread
// only.
class LoadProgress : public View {
 public:
  static constexpr double height = 3;  // points

  LoadProgress(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<WebView> page);

  // Where the line stands, and how long it is once the page is there.
  void place(double top, double width);

  void loadBegan();
  void loadEnded();
  // Forgets the load, whatever becomes of it.
  void stop() { timer_.invalidate(); }

  // Whether the load that has just failed was given up here; asked once per failure.
  [[nodiscard]] bool takeGivenUp() { return std::exchange(givenUp_, false); }

 private:
  void tick();
  void draw();

  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<WebView> page_;
  double top_ = 0;
  double width_ = 0;
  Timer timer_;
  double lastProgress_ = 0;
  Seconds lastProgressAt_{0};
  bool givenUp_ = false;
};

}  // namespace tavo
