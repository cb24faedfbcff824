#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "AdPlayer/MraidChecklist/MraidStage.h"
#include "AdServer/AdServer.h"
#include "Services/RunLoop.h"

namespace tavo::adplayer {

// The creatives, in the order in which they are played.
[[nodiscard]] std::span<const std::string_view> mraidCreatives();

// What became of one point of the checklist.
struct MraidResult {
  std::string name;
  std::string sentence;
  bool isMet = false;
  bool isDue = false;  // the library meets it in the mode that was played
  std::string found;   // what the creative saw, for a person; empty where it has not come so far
};

// Plays the checklist's creatives one after the other in a real window, by the library itself, and
// collects which points of MRAID 2.0 they find met. A point that nobody speaks of is not met. Needs
// a runtime with the platform of a display; main thread only.
class MraidChecklist {
 public:
  struct Settings {
    MraidStage::Settings stage{};
    std::string creatives;  // the folder
    std::string only{};     // the one creative to play; empty: all. Others' points are left out.
  };
  using Results = std::vector<MraidResult>;

  // Throws std::runtime_error where no server can be made.
  explicit MraidChecklist(Settings settings);
  ~MraidChecklist();

  // `finished` is called once, never inside this call.
  void start(std::function<void(const Results&)> finished);
  // What is said while it runs: the creative that begins, and scripts that failed.
  std::function<void(const std::string&)> onNote{};

 private:
  void next();
  void ended();
  void heard(const adserver::RecordedRequest& request);
  void notePoint(const MraidStage::Fields& fields);
  [[nodiscard]] Results results() const;

  Settings settings_;
  std::shared_ptr<adserver::AdServer> server_;
  MraidStage stage_;
  std::size_t current_ = 0;
  Timer patience_;
  Timer following_;
  std::map<std::string, MraidResult> found_;
  std::function<void(const Results&)> finished_;
};

}  // namespace tavo::adplayer
