#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AdPlayer/Events/PlayEvent.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// Everything that happened, in order. Main thread only.
class EventLog {
 public:
  // More is not kept: a page that talks without end must not take the tester's memory.
  static constexpr std::size_t mostEvents = 20'000;

  explicit EventLog(std::shared_ptr<RunLoop> runLoop);

  // Empties the log; its clock begins at zero.
  void begin();
  void add(std::string kind, std::string text, std::vector<InspectionField> fields = {});
  // An event whose time is known on the clock of the loop.
  void addAt(Seconds loopTime, PlayEvent event);

  [[nodiscard]] const std::deque<PlayEvent>& events() const { return events_; }

  // Hears each event after it was added, for as long as what is returned lives.
  using Listener = std::function<void(const PlayEvent&)>;
  [[nodiscard]] std::shared_ptr<void> listen(Listener listener);

 private:
  std::shared_ptr<RunLoop> runLoop_;
  Seconds start_;
  std::deque<PlayEvent> events_;
  std::vector<std::weak_ptr<Listener>> listeners_;
};

}  // namespace tavo::adplayer
