#include "Gtk/Web/WebViewPool.h"

#include <algorithm>

namespace tavo::gtk {
namespace {

// So many go down when one of them does. The view that is made ahead has its place beside ten
// pages: a process for it alone would weigh as much as most of them.
constexpr std::size_t viewsPerProcess = 11;
constexpr std::size_t longestIdleList = 6;
constexpr Seconds restBeforeSpare{0.3};
constexpr std::ptrdiff_t idlePerOwner = 2;
constexpr Seconds longestIdle{600};

bool same(const WebViewOptions& left, const WebViewOptions& right) {
  return left.owner == right.owner && left.ownProcess == right.ownProcess &&
         left.kind == right.kind;
}

}  // namespace

WebViewPool::WebViewPool(std::shared_ptr<WebEngine> engine) : engine_{std::move(engine)} {}

std::shared_ptr<NativeWebView> WebViewPool::acquire(const WebViewOptions& options) {
  if (!options.ownProcess) ++shared_;
  if (auto idle = takeIdle(options)) return idle;
  if (auto spare = takeSpare(options)) return spare;
  return make(options);
}

// While the last page is being cleared away from the screen, the other view of its slot is ready.
std::shared_ptr<NativeWebView> WebViewPool::takeIdle(const WebViewOptions& options) {
  if (options.owner == nullptr) return nullptr;
  const auto isOwn = [&](const Idle& idle) {
    return same(idle.options, options) && !idle.view->isDead() && !(spare_ && idle.view->isWorn());
  };
  const auto isFree = [&](const Idle& idle) { return isOwn(idle) && !idle.view->isClogged(); };
  const auto isReady = [&](const Idle& idle) {
    return isFree(idle) &&
           (idle.view->isBlank() || gtk_widget_get_parent(idle.view->widget()) == nullptr);
  };
  auto found = std::find_if(idle_.begin(), idle_.end(), isReady);
  // One more would not be kept.
  const bool hasItsViews = std::ranges::count_if(idle_, isOwn) >= idlePerOwner;
  if (found == idle_.end() && hasItsViews) {
    found = std::find_if(idle_.begin(), idle_.end(), isFree);
  }
  if (found == idle_.end()) return nullptr;
  auto view = std::move(found->view);
  idle_.erase(found);
  return view;
}

// With it the owner leaves the process that is worn.
std::shared_ptr<NativeWebView> WebViewPool::takeSpare(const WebViewOptions& options) {
  const bool fits = spare_ && !options.ownProcess && options.kind == PageKind::creative;
  if (!fits || spare_->isDead() || spare_->isClogged()) return nullptr;
  std::erase_if(
      idle_, [&](const Idle& idle) { return same(idle.options, options) && idle.view->isWorn(); });
  spareTimer_.invalidate();
  return std::exchange(spare_, nullptr);
}

void WebViewPool::pageFinished() {
  if (spare_ && !spare_->isDead()) return;
  spareTimer_ = engine_->services().runLoop->after(restBeforeSpare, [this] { makeSpare(); });
}

// Not for a host that shows one page and no other.
void WebViewPool::makeSpare() {
  const bool isExpected = shared_ > 1;
  if (!isExpected) return;
  spare_ = make({});
  spare_->warmUp();
  spareTimer_ = engine_->services().runLoop->after(longestIdle, [this] { spare_.reset(); });
}

std::shared_ptr<NativeWebView> WebViewPool::make(const WebViewOptions& options) {
  if (options.ownProcess) {
    return NativeWebView::create(engine_, options.kind, nullptr, std::make_shared<int>(0));
  }
  auto& process = processToShare();
  const auto related = process.views.empty() ? nullptr : process.views.front().lock();
  auto view = NativeWebView::create(engine_, options.kind, related.get(), process.pages);
  process.views.push_back(view);
  return view;
}

// One with room that is up to its work, else a new one.
WebViewPool::SharedProcess& WebViewPool::processToShare() {
  for (auto& process : processes_) {
    std::erase_if(process.views, [](const auto& page) {
      const auto view = page.lock();
      return !view || view->isDead();
    });
  }
  std::erase_if(processes_, [](const auto& process) { return process.views.empty(); });
  const auto isClogged = [](const auto& page) { return page.lock()->isClogged(); };
  const auto roomy = std::find_if(processes_.begin(), processes_.end(), [&](const auto& process) {
    return process.views.size() < viewsPerProcess &&
           !NativeWebView::isWorn(*process.pages, engine_->services().limits) &&
           std::none_of(process.views.begin(), process.views.end(), isClogged);
  });
  if (roomy == processes_.end()) return processes_.emplace_back();
  std::rotate(roomy, roomy + 1, processes_.end());
  return processes_.back();
}

void WebViewPool::giveBack(const std::shared_ptr<NativeWebView>& view,
                           const WebViewOptions& options) {
  if (options.owner == nullptr || view->isDead()) return;
  if (view->isWorn() && (options.ownProcess || spare_)) return;
  view->release();
  keep(view, options);
}

void WebViewPool::keep(const std::shared_ptr<NativeWebView>& view, const WebViewOptions& options) {
  dropStale();
  const auto kept = std::count_if(idle_.begin(), idle_.end(),
                                  [&](const Idle& idle) { return same(idle.options, options); });
  if (kept >= idlePerOwner) return;
  if (idle_.size() >= longestIdleList) idle_.erase(idle_.begin());
  idle_.push_back({view, options, engine_->services().runLoop->now()});
  if (!sweeper_.isValid()) sweepLater();
}

// Once, when the oldest is due: nobody is woken before.
void WebViewPool::sweepLater() {
  if (idle_.empty()) return;
  auto& runLoop = *engine_->services().runLoop;
  sweeper_ = runLoop.after(idle_.front().since + longestIdle - runLoop.now(), [this] {
    dropStale();
    sweepLater();
  });
}

void WebViewPool::warmUp(const WebViewOptions& options) {
  const bool ready = std::any_of(idle_.begin(), idle_.end(),
                                 [&](const Idle& idle) { return same(idle.options, options); });
  if (options.owner == nullptr || ready) return;
  auto view = takeSpare(options);
  if (!view) {
    view = make(options);
    view->warmUp();
  }
  keep(view, options);
}

std::shared_ptr<ReloadBudget> WebViewPool::reloadBudget(const void* owner) {
  const Seconds now = engine_->services().runLoop->now();
  std::erase_if(budgets_, [now](const auto& entry) {
    return entry.second.use_count() == 1 && entry.second->isFresh(now);
  });
  const int limit = engine_->services().limits.webProcessReloadsPerMinute;
  if (owner == nullptr) return std::make_shared<ReloadBudget>(limit);
  auto& budget = budgets_[owner];
  if (!budget) budget = std::make_shared<ReloadBudget>(limit);
  return budget;
}

void WebViewPool::dropStale() {
  const Seconds now = engine_->services().runLoop->now();
  std::erase_if(idle_, [now](const Idle& idle) {
    return idle.view->isDead() || now - idle.since >= longestIdle;
  });
}

}  // namespace tavo::gtk
