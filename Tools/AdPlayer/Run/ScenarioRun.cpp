#include "AdPlayer/Run/ScenarioRun.h"

#include <algorithm>
#include <utility>

#include "AdPlayer/Screenshot.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

constexpr Seconds lookDistance{0.05};
constexpr Seconds tapPatience{0.4};
constexpr int tapAttempts = 20;
constexpr int pictureAttempts = 60;

bool holds(const PlayEvent& event, const Condition& condition) {
  return event.kind == condition.event && contains(event.text, condition.text);
}

}  // namespace

ScenarioRun::ScenarioRun(Place place, std::vector<Step> steps,
                         std::function<void(const Result&)> finished)
    : place_{std::move(place)}, steps_{std::move(steps)}, finished_{std::move(finished)} {}

ScenarioRun::~ScenarioRun() = default;

void ScenarioRun::start() { done(); }

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

// A page that has just come is on the screen a few frames later, and feels nothing until then.
void ScenarioRun::tapUntilFelt(const std::string& selector, int attempts) {
  Fingers::find(place_.session, selector,
                [weak = std::weak_ptr{self_}, selector, attempts](std::optional<Point> point) {
                  const auto held = weak.lock();
                  if (!held) return;
                  ScenarioRun& self = **held;
                  if (!point) return self.stop("nothing in the page is \"" + selector + "\"");
                  self.fingers_.tap(self.place_.phone, *point);
                  self.later(tapPatience, [&self, selector, attempts] {
                    Fingers::ask(self.place_.session, [weak = std::weak_ptr{self.self_}, selector,
                                                       attempts](bool landed) {
                      const auto there = weak.lock();
                      if (!there) return;
                      if (landed) return (*there)->done();
                      if (attempts == 0)
                        return (*there)->stop("the page felt no tap on \"" + selector + "\"");
                      (*there)->tapUntilFelt(selector, attempts - 1);
                    });
                  });
                });
}

void ScenarioRun::carryOut(const Wait& wait) {
  look(wait.condition, place_.stage.platform().runLoop->now() + wait.patience);
}

void ScenarioRun::look(const Condition& condition, Seconds until) {
  ask(condition, [this, condition, until](bool isMet) {
    if (isMet) return done();
    if (place_.stage.platform().runLoop->now() >= until) {
      return stop("waited in vain for " + condition.wording);
    }
    later(lookDistance, [this, condition, until] { look(condition, until); });
  });
}

// What the page shows is known a little later.
void ScenarioRun::ask(const Condition& condition, const Met& met) {
  if (condition.kind != Condition::Kind::text) return met(isMet(condition));
  const auto page = place_.session.page();
  if (!page) return met(false);
  page->evaluate("document.body ? document.body.innerText : ''",
                 [weak = std::weak_ptr{self_}, met, condition](const std::string& shown) {
                   if (weak.lock()) met(contains(shown, condition.text));
                 });
}

bool ScenarioRun::isMet(const Condition& condition) const {
  const auto& events = place_.stage.log().events();
  const auto any = [&](const auto& matches) {
    return std::any_of(events.begin(), events.end(), matches);
  };
  switch (condition.kind) {
    case Condition::Kind::outcome:
      return place_.session.outcome() != Outcome::none;
    case Condition::Kind::loaded:
      return place_.session.outcome() == Outcome::loaded;
    case Condition::Kind::failed:
      return place_.session.outcome() == Outcome::failed;
    case Condition::Kind::finished: {
      if (place_.session.outcome() != Outcome::loaded) return isMet({Condition::Kind::failed});
      if (!contains(place_.session.classification(), "VAST")) return true;
      return any([](const PlayEvent& event) {
        return event.kind == "callback" &&
               (contains(event.text, "PrerollDidFinish") || contains(event.text, "Dismissed") ||
                contains(event.text, "DidFailWithError"));
      });
    }
    case Condition::Kind::state: {
      const auto last = std::find_if(events.rbegin(), events.rend(),
                                     [](const PlayEvent& event) { return event.kind == "state"; });
      return last != events.rend() && last->text == condition.text;
    }
    case Condition::Kind::event:
      return any([&](const PlayEvent& event) { return holds(event, condition); });
    case Condition::Kind::noEvent:
      return !any([&](const PlayEvent& event) { return holds(event, condition); });
    case Condition::Kind::pings:
      return std::count_if(events.begin(), events.end(), [](const PlayEvent& event) {
               return event.kind == "ping" && event.text.starts_with("answered");
             }) >= condition.count;
    case Condition::Kind::text:
      break;
  }
  return false;
}

void ScenarioRun::carryOut(const Expect& expect) {
  ask(expect.condition, [this, expect](bool isMet) {
    note("expected " + expect.condition.wording, isMet);
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
  // The window takes a frame or two to follow.
  later(lookDistance, [this] { next(); });
}

}  // namespace tavo::adplayer
