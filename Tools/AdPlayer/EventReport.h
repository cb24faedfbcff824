#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace tavo::adplayer {

// One thing that happened while a campaign was played.
struct PlayerEvent {
  std::chrono::milliseconds time{0};  // since the campaign was started
  std::string campaign;
  std::string
      kind;  // "ad", "asset", "tracking", "ping", "callback", "classified", "picture", "end"
  std::string text;
};

// What happened, in order: for the window's list, for the report file and for whoever wants to know
// whether all went well.
class EventReport {
 public:
  using Listener = std::function<void(const PlayerEvent&)>;

  void setListener(Listener listener) { listener_ = std::move(listener); }

  // Starts the clock of a campaign.
  void begin(const std::string& campaign);
  void add(const std::string& kind, const std::string& text);

  [[nodiscard]] const std::vector<PlayerEvent>& events() const { return events_; }

  // One line per event.
  [[nodiscard]] static std::string lineOf(const PlayerEvent& event);
  [[nodiscard]] std::string toText() const;

 private:
  Listener listener_;
  std::vector<PlayerEvent> events_;
  std::string campaign_;
  std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
};

}  // namespace tavo::adplayer
