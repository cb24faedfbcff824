#include "Gtk/Web/EvaluationQueue.h"

#include <algorithm>
#include <deque>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

constexpr const char* isolatedWorld = "tavo";
// So often an evaluation is waited for when the page keeps sending things meanwhile.
constexpr double mostPatience = 5;
// After the patience has run out, answers that have arrived while the host itself was busy get this
// long to be read.
constexpr Seconds lastChance{0.25};

std::string answerText(JSCValue* value) {
  if (value == nullptr || jsc_value_is_undefined(value) != FALSE ||
      jsc_value_is_null(value) != FALSE) {
    return {};
  }
  const GText text{jsc_value_to_string(value)};
  return validUtf8(textOf(text.get()));
}

}  // namespace

// Outlives the queue while answers are on their way.
struct EvaluationQueue::Watch : std::enable_shared_from_this<Watch> {
  std::shared_ptr<RunLoop> runLoop;
  Seconds patience{};
  std::function<void()> unanswered;
  std::deque<Seconds> asked;  // when each evaluation that is out began to be waited for
  Seconds lastAnswer{};
  bool processRuns = false;
  Timer timer;

  void begun() {
    asked.push_back(runLoop->now());
    renew();
  }

  // They are answered in their order.
  void answered() {
    asked.pop_front();
    lastAnswer = runLoop->now();
    renew();
  }

  // A process may take its time to start.
  void restart() {
    for (auto& moment : asked) moment = runLoop->now();
    renew();
  }

  // Whatever the page asks meanwhile: only answers count.
  [[nodiscard]] Seconds deadline() const {
    return std::min(std::max(asked.front(), lastAnswer) + patience,
                    asked.front() + mostPatience * patience);
  }

  // Deadlines only move on, and most answers are there long before: a timer that runs already is
  // left alone, and looks when it is due.
  void renew() {
    if (!timer.isValid()) look();
  }

  void look() {
    if (asked.empty() || !processRuns || !unanswered) return;
    const Seconds left = deadline() - runLoop->now();
    if (left > Seconds{0}) {
      timer = runLoop->after(left, [this] { look(); });
    } else {
      timer = runLoop->after(lastChance, [this] { giveUp(); });
    }
  }

  void giveUp() {
    if (asked.empty() || !processRuns || deadline() > runLoop->now()) return look();
    const auto held = shared_from_this();
    if (unanswered) unanswered();
  }
};

struct EvaluationQueue::Evaluation {
  std::shared_ptr<Watch> watch;
  Completion completion;
};

EvaluationQueue::EvaluationQueue(WebKitWebView* view, std::shared_ptr<RunLoop> runLoop,
                                 Seconds patience, std::function<void()> unanswered)
    : view_{view}, watch_{std::make_shared<Watch>()} {
  watch_->runLoop = std::move(runLoop);
  watch_->patience = patience;
  watch_->unanswered = std::move(unanswered);
}

EvaluationQueue::~EvaluationQueue() {
  watch_->unanswered = nullptr;
  watch_->timer.invalidate();
}

int EvaluationQueue::outstanding() const { return static_cast<int>(watch_->asked.size()); }

void EvaluationQueue::setProcessRuns(bool runs) {
  if (watch_->processRuns == runs) return;
  watch_->processRuns = runs;
  watch_->restart();
}

void EvaluationQueue::evaluate(const std::string& script, World world, Completion completion) {
  const std::string text = validUtf8(script);
  const bool canWait = world == World::page && !completion && StatementBatch::takes(text);
  if (!canWait) {
    flush();
    return run(text, world, std::move(completion));
  }
  if (batch_.empty()) {
    watch_->runLoop->post([weak = std::weak_ptr<EvaluationQueue*>{self_}] {
      if (const auto self = weak.lock()) (*self)->flush();
    });
  }
  batch_.add(text);
  if (batch_.isFull()) flush();
}

void EvaluationQueue::ping() {
  if (watch_->processRuns && watch_->asked.empty()) run("0", World::page, {});
}

void EvaluationQueue::flush() {
  if (!batch_.empty()) run(batch_.take(), World::page, {});
}

void EvaluationQueue::run(const std::string& text, World world, Completion completion) {
  auto evaluation = std::make_unique<Evaluation>(Evaluation{watch_, std::move(completion)});
  watch_->begun();
  webkit_web_view_evaluate_javascript(view_, text.data(), static_cast<gssize>(text.size()),
                                      world == World::isolated ? isolatedWorld : nullptr, nullptr,
                                      nullptr, fenced<&EvaluationQueue::finished>,
                                      evaluation.release());
}

void EvaluationQueue::finished(GObject* view, GAsyncResult* result, gpointer evaluation) {
  const std::unique_ptr<Evaluation> done{static_cast<Evaluation*>(evaluation)};
  GFailure failure;
  const auto value = GPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, failure.out()));
  done->watch->answered();
  if (done->completion) done->completion(answerText(value.get()));
}

}  // namespace tavo::gtk
