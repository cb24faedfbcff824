#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include <tavo/ViewController.h>

#include "ClickThrough/OpenSheets.h"
#include "Runtime/Environment.h"
#include "Services/RunLoop.h"

namespace tavo {

// Shows an application's page in the store, in the system's sheet above what is in front. Main
// thread only; dropping it ends it.
class StorePresenter : public std::enable_shared_from_this<StorePresenter> {
 public:
  struct Events {
    // Who can present something when the sheet is due; null: nobody, and no sheet is shown.
    std::function<ViewController*()> presenter{};
    // The user is done with the sheet, which is gone by then.
    std::function<void()> closed{};
  };

  [[nodiscard]] static std::shared_ptr<StorePresenter> create(
      std::shared_ptr<Environment> environment, Events events);

  // The sheet comes half a second later, when what the click has set off is over; its page loads
  // meanwhile. Takes the place of a sheet that is still to come.
  void show(std::int64_t application);
  // A sheet that is still to come stays away.
  void forget() { delay_.invalidate(); }
  // The same, and one that is on the screen leaves it without a report.
  void end();

 private:
  StorePresenter(std::shared_ptr<Environment> environment, Events events);

  void present(const std::shared_ptr<ViewController>& sheet);
  void sheetFinished();

  std::shared_ptr<Environment> environment_;
  Events events_;
  OpenSheets sheets_;
  std::weak_ptr<ViewController> sheet_;
  Timer delay_;
};

}  // namespace tavo
