#pragma once

#include <memory>
#include <vector>

#include <tavo/ViewController.h>

namespace tavo {

// Dismisses a sheet through whoever presents it; nothing when nobody does.
void dismissSheet(const std::weak_ptr<ViewController>& sheet, Animated animated);

// What clicks on one ad have put on the screen. It goes with this object, so that nothing stands
// there that has lost the ad behind it. Main thread only.
class OpenSheets {
 public:
  OpenSheets() = default;
  ~OpenSheets() { dismissAll(); }
  OpenSheets(const OpenSheets&) = delete;
  OpenSheets& operator=(const OpenSheets&) = delete;

  // Where the presenter has no room, the sheet is not shown, and nobody keeps it.
  void present(ViewController& presenter, const std::shared_ptr<ViewController>& sheet);
  // The newest first.
  void dismissAll();

 private:
  std::vector<std::weak_ptr<ViewController>> sheets_;
};

}  // namespace tavo
