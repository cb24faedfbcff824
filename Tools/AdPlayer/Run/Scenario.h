#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <tavo/Geometry.h>

#include "AdPlayer/Stage/Stage.h"

namespace tavo::adplayer {

// What a scenario waits for or expects.
struct Condition {
  enum class Kind {
    outcome,   // the ad has loaded or has failed
    loaded,    //
    failed,    //
    takenFor,  // loaded, and the library took it for `text`
    drawn,     // what came is on the screen; at once where nothing came
    finished,  // nothing more comes by itself: a film is over, or anything else has an outcome,
               // and no ping is under way
    state,     // the creative was told this MRAID state last
    event,     // an event of `kind` whose text holds `text`
    noEvent,   // no such event
    pings,     // that many pings were answered, or more
    text,      // the page of the creative shows `text`
  };
  Kind kind = Kind::outcome;
  std::string event{};
  std::string text{};
  int count = 0;
  std::string wording{};  // as the scenario has it
};

struct TapAt {
  Point point;
};
struct TapOn {
  std::string selector;
};
struct Wait {
  Condition condition;
  Seconds patience{30};
};
struct Expect {
  Condition condition;
};
struct Advance {
  Seconds time;
};
struct Picture {
  std::string name;
};
enum class ScreenStep {
  rotate,
  portrait,
  landscape,
  hide,
  show,
  cover,
  uncover,
  scroll,
  unscroll,
  close
};
using StepAction =
    std::variant<TapAt, TapOn, Wait, Expect, Advance, Picture, DeviceEvent, ScreenStep>;

struct Step {
  int line = 0;
  std::string wording;
  StepAction action;
};

// A mistake: "file:line: what is wrong and what was expected".
struct ScenarioMistake {
  std::string text;
};

// Reads a scenario; one step a line, "#" begins a comment. README.md has the language.
[[nodiscard]] std::variant<std::vector<Step>, ScenarioMistake> readScenario(
    std::string_view text, const std::string& file);

// What is done without a scenario: waits for the outcome, takes a picture, lets a film end, and
// expects what is named as a condition.
[[nodiscard]] std::vector<Step> defaultScenario(const std::string& expectation);

}  // namespace tavo::adplayer
