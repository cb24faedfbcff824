#include "Gtk/Web/PageTurnover.h"

#include <string_view>
#include <utility>

#include <tavo/WebView.h>

#include "Gtk/Web/PolicyQuestion.h"

namespace tavo::gtk {

namespace {
// The process that clears a page away is the one in which the slot's next page is loading.
constexpr Seconds clearDelay{0.25};
}  // namespace

PageTurnover::PageTurnover(WebKitWebView* view, std::shared_ptr<WebEngine> engine,
                           std::function<void()> endProcess)
    : view_{view}, engine_{std::move(engine)}, endProcess_{std::move(endProcess)} {}

PageTurnover::~PageTurnover() { dropWaiting(); }

bool PageTurnover::isUnderWay() const { return stage_ >= Stage::leaving; }

bool PageTurnover::isWithoutProcess() const {
  return stage_ == Stage::ended || stage_ == Stage::endedUnderWay;
}

// Without scripts, so that a page whose timers keep going somewhere else does not stop every load
// that is to replace it, and writes nothing into what is emptied here.
void PageTurnover::leave() {
  stage_ = isWithoutProcess() ? Stage::endedUnderWay : Stage::leaving;
  beginAfter(clearDelay);
  isSilent_ = false;
  engine_->services().runLoop->post([weak = std::weak_ptr{self_}] {
    if (const auto self = weak.lock()) (*self)->silence();
  });
}

void PageTurnover::silence() {
  if (stage_ != Stage::leaving || std::exchange(isSilent_, true)) return;
  isEmptied_ = false;
  webkit_settings_set_enable_javascript(webkit_web_view_get_settings(view_), FALSE);
  webkit_web_view_set_is_muted(view_, TRUE);
  webkit_web_view_stop_loading(view_);
  engine_->forgetStorage([weak = std::weak_ptr{self_}] {
    const auto self = weak.lock();
    if (!self) return;
    (*self)->isEmptied_ = true;
    if ((*self)->stage_ == Stage::emptying) (*self)->finish();
  });
}

void PageTurnover::beginAfter(Seconds delay) {
  deadline_ = engine_->services().runLoop->after(delay, [this] {
    begin();
    // A script that loops keeps the blank page away for ever.
    if (stage_ == Stage::blankAsked) {
      deadline_ = engine_->services().runLoop->after(engine_->services().limits.webProcessPing,
                                                     endProcess_);
    }
  });
}

void PageTurnover::begin() {
  if (isWithoutProcess()) return finish();
  silence();
  stage_ = Stage::blankAsked;
  webkit_settings_set_enable_javascript(webkit_web_view_get_settings(view_), FALSE);
  webkit_web_view_load_uri(view_, blankPage);
}

void PageTurnover::decide(WebKitPolicyDecision* navigation) {
  const bool isBlank = urlText(navigation) == blankPage;
  if (isBlank) {
    webkit_policy_decision_use(navigation);
  } else {
    webkit_policy_decision_ignore(navigation);
  }
  if (stage_ != Stage::emptying) stage_ = isBlank ? Stage::blankBegun : Stage::blankAsked;
}

void PageTurnover::noteLoad(WebKitLoadEvent event) {
  if (stage_ != Stage::blankBegun || event != WEBKIT_LOAD_FINISHED) return;
  stage_ = Stage::emptying;
  if (isEmptied_) finish();
}

void PageTurnover::noteProcessRuns() {
  if (stage_ == Stage::ended) stage_ = Stage::open;
}

void PageTurnover::noteProcessEnded() {
  stage_ = isUnderWay() ? Stage::endedUnderWay : Stage::ended;
}

void PageTurnover::finishWithoutProcess() { finish(); }

void PageTurnover::finish() {
  deadline_.invalidate();
  stage_ = isWithoutProcess() ? Stage::ended : Stage::open;
  if (stage_ == Stage::open) engine_->forgetHistory(view_);
  blankItem_ = GPtr<WebKitBackForwardListItem>::share(
      webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view_)));
  webkit_settings_set_enable_javascript(webkit_web_view_get_settings(view_), TRUE);
  webkit_web_view_set_is_muted(view_, FALSE);
  for (const auto& waiting : std::exchange(waiting_, {})) waiting.run();
}

void PageTurnover::whenThere(std::function<void()> run, std::function<void()> drop) {
  if (!isUnderWay()) return run();
  waiting_.push_back({std::move(run), std::move(drop)});
  if (stage_ == Stage::leaving || stage_ == Stage::endedUnderWay) beginAfter(Seconds{0});
}

void PageTurnover::dropWaiting() {
  for (const auto& waiting : std::exchange(waiting_, {})) {
    if (waiting.drop) engine_->services().runLoop->post(waiting.drop);
  }
}

bool PageTurnover::isFirstPage() const {
  auto* const before =
      webkit_back_forward_list_get_back_item(webkit_web_view_get_back_forward_list(view_));
  return before == nullptr || before == blankItem_.get();
}

bool PageTurnover::isBlankPage() const {
  auto* const list = webkit_web_view_get_back_forward_list(view_);
  return webkit_back_forward_list_get_current_item(list) == blankItem_.get();
}

}  // namespace tavo::gtk
