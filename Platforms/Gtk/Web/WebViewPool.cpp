#include "Gtk/Web/WebViewPool.h"

#include <algorithm>

namespace tavo::gtk {
namespace {

constexpr std::size_t pagesPerProcess = 10;  // so many go down when one of them does
constexpr std::size_t longestIdleList = 6;
constexpr std::ptrdiff_t idlePerOwner = 2;
constexpr Seconds longestIdle{600};
constexpr Seconds sweepPeriod{60};

bool same(const WebViewOptions& left, const WebViewOptions& right) {
  return left.owner == right.owner && left.ownProcess == right.ownProcess &&
         left.kind == right.kind;
}

}  // namespace

WebViewPool::WebViewPool(std::shared_ptr<WebEngine> engine) : engine_{std::move(engine)} {}

std::shared_ptr<NativeWebView> WebViewPool::acquire(const WebViewOptions& options) {
  if (auto idle = takeIdle(options)) return idle;
  return make(options);
}

// While the last page is being cleared away from the screen, the other view of its slot is ready.
std::shared_ptr<NativeWebView> WebViewPool::takeIdle(const WebViewOptions& options) {
  if (options.owner == nullptr) return nullptr;
  const auto isFree = [&](const Idle& idle) {
    return same(idle.options, options) && !idle.view->isDead() && !idle.view->isClogged();
  };
  const auto isReady = [&](const Idle& idle) {
    return isFree(idle) &&
           (idle.view->isBlank() || gtk_widget_get_parent(idle.view->widget()) == nullptr);
  };
  auto found = std::find_if(idle_.begin(), idle_.end(), isReady);
  const auto all = std::count_if(idle_.begin(), idle_.end(), isFree);
  if (found == idle_.end() && all >= idlePerOwner) {
    found = std::find_if(idle_.begin(), idle_.end(), isFree);
  }
  if (found == idle_.end()) return nullptr;
  auto view = std::move(found->view);
  idle_.erase(found);
  return view;
}

std::shared_ptr<NativeWebView> WebViewPool::make(const WebViewOptions& options) {
  auto view =
      NativeWebView::create(engine_, options.kind, options.ownProcess ? nullptr : processToShare());
  if (!options.ownProcess) processes_.back().push_back(view);
  return view;
}

// A process with room that is up to its work; null, and a new entry, when there is none.
const NativeWebView* WebViewPool::processToShare() {
  for (auto& pages : processes_) {
    std::erase_if(pages, [](const auto& page) {
      const auto view = page.lock();
      return !view || view->isDead();
    });
  }
  std::erase_if(processes_, [](const auto& pages) { return pages.empty(); });
  const auto isClogged = [](const auto& page) { return page.lock()->isClogged(); };
  const auto roomy = std::find_if(processes_.begin(), processes_.end(), [&](const auto& pages) {
    return pages.size() < pagesPerProcess && std::none_of(pages.begin(), pages.end(), isClogged);
  });
  if (roomy == processes_.end()) {
    processes_.emplace_back();
    return nullptr;
  }
  std::rotate(roomy, roomy + 1, processes_.end());
  return processes_.back().front().lock().get();
}

void WebViewPool::giveBack(const std::shared_ptr<NativeWebView>& view,
                           const WebViewOptions& options) {
  if (options.owner == nullptr || view->isDead()) return;
  view->release();
  dropStale();
  const auto kept = std::count_if(idle_.begin(), idle_.end(),
                                  [&](const Idle& idle) { return same(idle.options, options); });
  if (kept >= idlePerOwner) return;
  if (idle_.size() >= longestIdleList) idle_.erase(idle_.begin());
  idle_.push_back({view, options, engine_->services().runLoop->now()});
  if (!sweeper_.isValid()) {
    sweeper_ = engine_->services().runLoop->every(sweepPeriod, [this] { dropStale(); });
  }
}

void WebViewPool::warmUp(const WebViewOptions& options) {
  const bool ready = std::any_of(idle_.begin(), idle_.end(),
                                 [&](const Idle& idle) { return same(idle.options, options); });
  if (options.owner != nullptr && !ready) giveBack(make(options), options);
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
  if (idle_.empty()) sweeper_.invalidate();
}

}  // namespace tavo::gtk
