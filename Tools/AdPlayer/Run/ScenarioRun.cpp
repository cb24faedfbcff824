#include "AdPlayer/Run/ScenarioRun.h"

#include <algorithm>
#include <utility>

#include <tavo/TrackingLedger.h>

#include "AdPlayer/Screenshot.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

constexpr Seconds lookDistance{0.05};
constexpr Seconds tapPatience{0.4};
constexpr int tapAttempts = 20;
constexpr int pictureAttempts = 60;
constexpr int framesToScreen = 3;  // from the page's own drawing to the window

bool holds(const PlayEvent& event, const Condition& condition) {
  return event.kind == condition.event && contains(event.text, condition.text);
}

}  // namespace

ScenarioRun::ScenarioRun(Place place, std::vector<Step> steps,
                         std::function<void(const Result&)> finished)
    : place_{std::move(place)},
      steps_{std::move(steps)},
      mark_{place_.session, place_.phone, place_.stage.platform().runLoop},
      finished_{std::move(finished)} {}

ScenarioRun::~ScenarioRun() = default;

void ScenarioRun::start() { done(); }

Seconds ScenarioRun::now() const { return place_.stage.platform().runLoop->now(); }

void ScenarioRun::later(Seconds time, std::function<void()> task) {
  timer_ = place_.stage.platform().runLoop->after(time, std::move(task));
}

void ScenarioRun::done() {
  later(Seconds{0}, [this] { next(); });
}

void ScenarioRun::next() {
  if (at_ == steps_.size()) {
    const bool isGood = std::all_of(result_.expectations.begin(), result_.expectations.end(),
                                    [](const auto& one) { return one.isMet; });
    result_.verdict = isGood ? Verdict::passed : Verdict::failed;
    result_.outcome = nameOf(place_.session.outcome());
    result_.classification = told();
    const auto finished = finished_;
    return finished(result_);
  }
  const Step& step = steps_[at_++];
  std::visit([this](const auto& action) { carryOut(action); }, step.action);
}

// What the ad was taken for or, of a failure, why.
std::string ScenarioRun::told() const {
  const auto& events = place_.stage.log().events();
  const auto last = std::find_if(events.rbegin(), events.rend(),
                                 [](const PlayEvent& event) { return event.kind == "outcome"; });
  const bool hasFailed = place_.session.outcome() == Outcome::failed && last != events.rend();
  return hasFailed ? last->text : place_.session.classification();
}

void ScenarioRun::stop(const std::string& why) {
  note(why, false);
  at_ = steps_.size();
  takePicture("end", pictureAttempts);
}

void ScenarioRun::note(const std::string& text, bool isMet) {
  const Step& step = steps_[at_ - 1];
  const std::string line = "line " + std::to_string(step.line) + ": " + text;
  place_.stage.log().add("expect", text + (isMet ? ": yes" : ": no"),
                         {{"met", isMet ? "yes" : "no"}, {"line", std::to_string(step.line)}});
  result_.expectations.push_back({line, isMet});
  if (!isMet && result_.why.empty()) result_.why = line;
}

void ScenarioRun::carryOut(const TapAt& tap) {
  if (!fingers_.canTouch()) return stop("no tap is possible on this screen");
  place_.stage.log().add("step", steps_[at_ - 1].wording);
  fingers_.tap(place_.phone, tap.point);
  done();
}

void ScenarioRun::carryOut(const TapOn& tap) {
  if (!fingers_.canTouch()) return stop("no tap is possible on this screen");
  place_.stage.log().add("step", steps_[at_ - 1].wording);
  tapUntilFelt(tap.selector, tapAttempts);
}

// A page that has just come is on the screen a few frames later, and feels nothing until then. What
// has gone meanwhile has felt the tap of before.
void ScenarioRun::tapUntilFelt(const std::string& selector, int attempts) {
  const bool isFirst = attempts == tapAttempts;
  Fingers::find(place_.session, selector, isFirst,
                [weak = std::weak_ptr{self_}, selector, attempts](std::optional<Point> point) {
                  const auto held = weak.lock();
                  if (!held) return;
                  ScenarioRun& self = **held;
                  if (!point && attempts < tapAttempts) return self.done();
                  if (!point) return self.stop("nothing in the page is \"" + selector + "\"");
                  self.fingers_.tap(self.place_.phone, *point);
                  self.lookForTap(selector, attempts, self.now() + tapPatience);
                });
}

void ScenarioRun::lookForTap(const std::string& selector, int attempts, Seconds until) {
  later(lookDistance, [this, selector, attempts, until] {
    Fingers::ask(place_.session,
                 [weak = std::weak_ptr{self_}, selector, attempts, until](bool landed) {
                   const auto held = weak.lock();
                   if (!held) return;
                   ScenarioRun& self = **held;
                   if (landed) return self.done();
                   if (self.now() < until) return self.lookForTap(selector, attempts, until);
                   if (attempts > 0) return self.tapUntilFelt(selector, attempts - 1);
                   self.stop("the page felt no tap on \"" + selector + "\"");
                 });
  });
}

void ScenarioRun::carryOut(const Wait& wait) { look(wait.condition, now() + wait.patience); }

void ScenarioRun::look(const Condition& condition, Seconds until) {
  ask(condition, [this, condition, until](Answer answer) {
    if (answer == Answer::yes) {
      note("waited for " + condition.wording, true);
      return done();
    }
    if (answer == Answer::never || now() >= until) {
      const std::string why = answer == Answer::never ? ": the ad has " + outcomeText() : "";
      return stop("waited in vain for " + condition.wording + why);
    }
    later(lookDistance, [this, condition, until] { look(condition, until); });
  });
}

std::string ScenarioRun::outcomeText() const {
  return place_.session.outcome() == Outcome::failed ? "failed, " + told()
                                                     : "loaded: " + place_.session.classification();
}

// What the page shows is known a little later.
void ScenarioRun::ask(const Condition& condition, const Met& met) {
  if (condition.kind == Condition::Kind::drawn) return askDrawn(met);
  if (condition.kind != Condition::Kind::text) return met(answerTo(condition));
  askPage("document.body ? document.body.innerText : ''",
          [met, text = condition.text](const std::string& shown) {
            met(contains(shown, text) ? Answer::yes : Answer::notYet);
          });
}

// `told` hears nothing where the ad has no page.
void ScenarioRun::askPage(const std::string& question,
                          const std::function<void(const std::string&)>& told) {
  const auto page = place_.session.page();
  if (!page) return told({});
  page->evaluate(question, [weak = std::weak_ptr{self_}, told](const std::string& said) {
    if (weak.lock()) told(said);
  });
}

void ScenarioRun::askDrawn(const Met& met) {
  const auto shown = [this, met] { afterFrames(framesToScreen, [met] { met(Answer::yes); }); };
  if (place_.session.outcome() == Outcome::none) return met(Answer::notYet);
  if (place_.session.outcome() == Outcome::failed) return shown();
  if (isFilm()) {
    const bool hasPlayed = isFinished() || hasEvent([](const PlayEvent& event) {
                             return event.kind == "callback" && contains(event.text, "Quartile");
                           });
    return hasPlayed ? shown() : met(Answer::notYet);
  }
  mark_.look([met, shown](bool isThere) { isThere ? shown() : met(Answer::notYet); });
}

void ScenarioRun::afterFrames(int count, std::function<void()> then) {
  place_.phone.add_tick_callback(
      [this, weak = std::weak_ptr{self_}, left = count, then = std::move(then)](auto&) mutable {
        if (weak.expired()) return false;
        if (--left > 0) return true;
        later(Seconds{0}, then);
        return false;
      });
}

bool ScenarioRun::hasEvent(const std::function<bool(const PlayEvent&)>& matches) const {
  const auto& events = place_.stage.log().events();
  return std::any_of(events.begin(), events.end(), matches);
}

bool ScenarioRun::isFilm() const { return contains(place_.session.classification(), "VAST"); }

bool ScenarioRun::isFinished() const {
  if (place_.session.outcome() == Outcome::none) return false;
  const PingTotals& pings = TrackingLedger::sharedInstance().totals();
  if (pings.due > pings.answered + pings.failed + pings.suppressed + pings.dropped) return false;
  if (place_.session.outcome() == Outcome::failed || !isFilm()) return true;
  return hasEvent([](const PlayEvent& event) {
    return event.kind == "callback" &&
           (contains(event.text, "PrerollDidFinish") || contains(event.text, "Dismissed") ||
            contains(event.text, "DidFailWithError"));
  });
}

ScenarioRun::Answer ScenarioRun::answerTo(const Condition& condition) const {
  const auto& events = place_.stage.log().events();
  const auto yesIf = [](bool is) { return is ? Answer::yes : Answer::notYet; };
  const auto wanted = [this](Outcome outcome) {
    if (place_.session.outcome() == Outcome::none) return Answer::notYet;
    return place_.session.outcome() == outcome ? Answer::yes : Answer::never;
  };
  switch (condition.kind) {
    case Condition::Kind::outcome:
      return yesIf(place_.session.outcome() != Outcome::none);
    case Condition::Kind::loaded:
      return wanted(Outcome::loaded);
    case Condition::Kind::failed:
      return wanted(Outcome::failed);
    case Condition::Kind::takenFor: {
      const Answer answer = wanted(Outcome::loaded);
      if (answer != Answer::yes) return answer;
      return contains(place_.session.classification(), condition.text) ? answer : Answer::never;
    }
    case Condition::Kind::finished:
      return yesIf(isFinished());
    case Condition::Kind::state: {
      const auto last = std::find_if(events.rbegin(), events.rend(),
                                     [](const PlayEvent& event) { return event.kind == "state"; });
      return yesIf(last != events.rend() && last->text == condition.text);
    }
    case Condition::Kind::event:
      return yesIf(hasEvent([&](const PlayEvent& event) { return holds(event, condition); }));
    case Condition::Kind::noEvent:
      return yesIf(!hasEvent([&](const PlayEvent& event) { return holds(event, condition); }));
    case Condition::Kind::pings:
      return yesIf(std::count_if(events.begin(), events.end(), [](const PlayEvent& event) {
                     return event.kind == "ping" && event.text.starts_with("answered");
                   }) >= condition.count);
    case Condition::Kind::drawn:
    case Condition::Kind::text:
      break;
  }
  return Answer::notYet;
}

void ScenarioRun::carryOut(const Expect& expect) {
  ask(expect.condition, [this, expect](Answer answer) {
    const std::string why = answer == Answer::never ? ": the ad has " + outcomeText() : "";
    note("expected " + expect.condition.wording + why, answer == Answer::yes);
    done();
  });
}

void ScenarioRun::carryOut(const Advance& advance) {
  later(advance.time, [this] { next(); });
}

void ScenarioRun::carryOut(const Picture& picture) { takePicture(picture.name, pictureAttempts); }

// A window that is about to be laid out anew has no picture; the next frame will do.
void ScenarioRun::takePicture(const std::string& name, int attempts) {
  if (place_.folder.empty()) return done();
  const std::string file = name + ".png";
  if (Screenshot{place_.phone}.save((place_.folder / file).string())) {
    place_.stage.log().add("picture", file, {{"file", file}});
    result_.pictures.push_back(file);
    return done();
  }
  if (attempts == 0) {
    note("the picture \"" + name + "\" could not be written", false);
    return done();
  }
  later(lookDistance, [this, name, attempts] { takePicture(name, attempts - 1); });
}

void ScenarioRun::carryOut(DeviceEvent event) {
  place_.stage.happen(event, place_.phone);
  done();
}

void ScenarioRun::carryOut(ScreenStep step) {
  Phone& phone = place_.phone;
  place_.stage.log().add("step", steps_[at_ - 1].wording);
  switch (step) {
    case ScreenStep::rotate:
      phone.setLandscape(!phone.isLandscape());
      break;
    case ScreenStep::portrait:
    case ScreenStep::landscape:
      phone.setLandscape(step == ScreenStep::landscape);
      break;
    case ScreenStep::hide:
    case ScreenStep::show:
      phone.setSlotHidden(step == ScreenStep::hide);
      break;
    case ScreenStep::cover:
    case ScreenStep::uncover:
      phone.setCovered(step == ScreenStep::cover);
      break;
    case ScreenStep::scroll:
    case ScreenStep::unscroll:
      phone.setScrolledAway(step == ScreenStep::scroll);
      break;
    case ScreenStep::close:
      place_.session.close();
      break;
  }
  afterFrames(framesToScreen, [this] { next(); });
}

}  // namespace tavo::adplayer
