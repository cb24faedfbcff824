#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AdPlayer/Run/Result.h"
#include "AdPlayer/Run/Scenario.h"
#include "AdPlayer/Stage/Fingers.h"
#include "AdPlayer/Stage/Stage.h"

namespace tavo::adplayer {

// Does the steps of a scenario one after the other, each in a turn of its own, while an ad is
// played. Main thread only.
class ScenarioRun {
 public:
  struct Place {
    Stage& stage;
    Phone& phone;
    Session& session;
    std::filesystem::path folder;  // for pictures; empty: none are taken
  };

  // `finished` is called once, with the expectations and the pictures; never inside `start`. A step
  // that cannot be done, or waits in vain, counts as an expectation that was not met, and ends it.
  ScenarioRun(Place place, std::vector<Step> steps, std::function<void(const Result&)> finished);
  ~ScenarioRun();
  ScenarioRun(const ScenarioRun&) = delete;
  ScenarioRun& operator=(const ScenarioRun&) = delete;

  void start();

 private:
  using Met = std::function<void(bool)>;
  void next();
  void done();
  [[nodiscard]] std::string told() const;
  void stop(const std::string& why);
  void carryOut(const TapAt& tap);
  void carryOut(const TapOn& tap);
  void tapUntilFelt(const std::string& selector, int attempts);
  void carryOut(const Wait& wait);
  void carryOut(const Expect& expect);
  void carryOut(const Advance& advance);
  void carryOut(const Picture& picture);
  void carryOut(DeviceEvent event);
  void carryOut(ScreenStep step);
  void look(const Condition& condition, Seconds until);
  void ask(const Condition& condition, const Met& met);
  [[nodiscard]] bool isMet(const Condition& condition) const;
  void note(const std::string& text, bool isMet);
  void takePicture(const std::string& name, int attempts);
  void later(Seconds time, std::function<void()> task);

  Place place_;
  std::vector<Step> steps_;
  std::size_t at_ = 0;
  Result result_;
  Fingers fingers_;
  std::function<void(const Result&)> finished_;
  Timer timer_;
  std::shared_ptr<ScenarioRun*> self_ = std::make_shared<ScenarioRun*>(this);
};

}  // namespace tavo::adplayer
