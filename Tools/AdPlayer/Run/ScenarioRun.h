#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AdPlayer/Run/PageMark.h"
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
  // Yes, not yet, or never any more.
  enum class Answer { yes, notYet, never };
  using Met = std::function<void(Answer)>;
  void next();
  void done();
  [[nodiscard]] Seconds now() const;
  [[nodiscard]] std::string told() const;
  [[nodiscard]] std::string outcomeText() const;
  void stop(const std::string& why);
  void carryOut(const TapAt& tap);
  void carryOut(const TapOn& tap);
  void tapUntilFelt(const std::string& selector, int attempts);
  void lookForTap(const std::string& selector, int attempts, Seconds until);
  void carryOut(const Wait& wait);
  void carryOut(const Expect& expect);
  void carryOut(const Advance& advance);
  void carryOut(const Picture& picture);
  void carryOut(DeviceEvent event);
  void carryOut(ScreenStep step);
  void look(const Condition& condition, Seconds until);
  void ask(const Condition& condition, const Met& met);
  void askPage(const std::string& script, const std::function<void(const std::string&)>& told);
  void askDrawn(const Met& met);
  void afterFrames(int count, std::function<void()> then);
  [[nodiscard]] bool isFinished() const;
  [[nodiscard]] bool isFilm() const;
  [[nodiscard]] bool hasEvent(const std::function<bool(const PlayEvent&)>& matches) const;
  [[nodiscard]] Answer answerTo(const Condition& condition) const;
  void note(const std::string& text, bool isMet);
  void takePicture(const std::string& name, int attempts);
  void later(Seconds time, std::function<void()> task);

  Place place_;
  std::vector<Step> steps_;
  std::size_t at_ = 0;
  Result result_;
  Fingers fingers_;
  PageMark mark_;
  std::function<void(const Result&)> finished_;
  Timer timer_;
  std::shared_ptr<ScenarioRun*> self_ = std::make_shared<ScenarioRun*>(this);
};

}  // namespace tavo::adplayer
