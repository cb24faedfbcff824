#include "AdPlayer/Run/PageMark.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "AdPlayer/Screenshot.h"

namespace tavo::adplayer {

namespace {

constexpr Seconds markPatience{20};
constexpr Seconds hiddenPatience{3};  // a page that has just come is shown a few frames later
constexpr double inCorner = 2;        // points from the page's upper left

// A page that has still another size than its view will draw itself again.
constexpr const char* setMark =
    "(() => { if (document.hidden) return 'hidden';"
    " if (Math.abs(innerWidth - %d) > 1 || Math.abs(innerHeight - %d) > 1) return 'later';"
    " if (!window.tavoMark) { const mark = window.tavoMark = document.createElement('i');"
    " mark.style.cssText = 'all:initial;position:fixed;left:0;top:0;width:6px;height:6px;"
    "z-index:2147483647;background:#fe01fd;pointer-events:none';"
    " document.documentElement.appendChild(mark); } return 'set'; })()";
constexpr const char* takeMark =
    "(() => { if (window.tavoMark) window.tavoMark.remove(); delete window.tavoMark; return ''; "
    "})()";

bool isNear(float part, int of) { return std::abs(part * 255.0F - static_cast<float>(of)) < 3; }

}  // namespace

PageMark::PageMark(Session& session, Phone& phone, std::shared_ptr<RunLoop> runLoop)
    : session_{session}, phone_{phone}, runLoop_{std::move(runLoop)} {}

Point PageMark::corner() const {
  const auto page = page_.lock();
  if (!page) return {-1, -1};
  const Rect place = page->convertTo(nullptr, page->bounds());
  return {place.x + inCorner, place.y + inCorner};
}

bool PageMark::isOnScreen() const {
  const Point point = corner();
  return point.x >= 0 && point.y >= 0 && point.x < phone_.screen().get_width() &&
         point.y < phone_.screen().get_height();
}

bool PageMark::isSeen() const {
  const Point point = corner();
  const Color colour = Screenshot{phone_.screen()}.pixel(static_cast<int>(std::floor(point.x)),
                                                         static_cast<int>(std::floor(point.y)));
  return isNear(colour.red, 0xfe) && isNear(colour.green, 0x01) && isNear(colour.blue, 0xfd);
}

void PageMark::begin(const std::shared_ptr<WebView>& page) {
  page_ = page;
  state_ = State::none;
  isHidden_ = false;
  patienceEnds_ = runLoop_->now() + markPatience;
  hiddenEnds_ = runLoop_->now() + hiddenPatience;
}

bool PageMark::end() {
  if (const auto page = page_.lock(); page && state_ != State::goingAway) {
    page->evaluate(takeMark, [](const std::string&) {});
  }
  page_.reset();
  return true;
}

void PageMark::look(const std::function<void(bool)>& told) {
  const auto page = session_.page();
  if (!page) return told(true);
  if (page != page_.lock()) begin(page);
  const bool isOver = runLoop_->now() > (isOnScreen() && !isHidden_ ? patienceEnds_ : hiddenEnds_);
  if (isOver) return told(end());
  if (state_ == State::goingAway) return told(!isSeen() && end());
  if (state_ == State::drawn && isSeen()) {
    state_ = State::goingAway;
    page->evaluate(takeMark, [](const std::string&) {});
    return told(false);
  }
  if (state_ != State::none) return told(false);
  state_ = State::asked;
  char marking[640];
  std::snprintf(marking, sizeof marking, setMark, static_cast<int>(page->bounds().width),
                static_cast<int>(page->bounds().height));
  page->evaluate(marking, [weak = std::weak_ptr{self_}](const std::string& answer) {
    if (const auto there = weak.lock()) (*there)->heard(answer);
  });
  told(false);
}

void PageMark::heard(const std::string& answer) {
  if (state_ != State::asked) return;
  state_ = answer == "set" ? State::drawn : State::none;
  isHidden_ = answer == "hidden";
}

}  // namespace tavo::adplayer
