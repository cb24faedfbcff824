#pragma once

#include <map>
#include <memory>
#include <vector>

#include "Gtk/Web/NativeWebView.h"
#include "Gtk/Web/ReloadBudget.h"
#include "Gtk/Web/WebEngine.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// The native web views: those that show a page, and the blank ones that wait for their owner's next
// answer. Slots share web processes, a few pages to each; a view that wants its own gets it. One
// spare view is made ahead, after a page, for whichever slot comes next: a new one, or one whose
// process has shown many pages and is left for another. Main thread only.
class WebViewPool {
 public:
  explicit WebViewPool(std::shared_ptr<WebEngine> engine);

  // A view that nobody else uses: the owner's last one when it is free, else a new one.
  [[nodiscard]] std::shared_ptr<NativeWebView> acquire(const WebViewOptions& options);
  // Gives a view back. It is kept for its owner, unless it has none or its process is gone.
  void giveBack(const std::shared_ptr<NativeWebView>& view, const WebViewOptions& options);
  // A page has loaded: the loop is about to have time for what the next one needs.
  void pageFinished();
  // Has a blank view ready for the owner's first page.
  void warmUp(const WebViewOptions& options);

  // Outlives the owner's single views: a new answer does not start the count again.
  [[nodiscard]] std::shared_ptr<ReloadBudget> reloadBudget(const void* owner);

 private:
  struct Idle {
    std::shared_ptr<NativeWebView> view;
    WebViewOptions options;
    Seconds since{};
  };

  struct SharedProcess {
    std::vector<std::weak_ptr<NativeWebView>> views{};
    std::shared_ptr<int> pages = std::make_shared<int>(0);
  };

  [[nodiscard]] std::shared_ptr<NativeWebView> takeIdle(const WebViewOptions& options);
  [[nodiscard]] std::shared_ptr<NativeWebView> takeSpare(const WebViewOptions& options);
  [[nodiscard]] std::shared_ptr<NativeWebView> make(const WebViewOptions& options);
  [[nodiscard]] SharedProcess& processToShare();
  void makeSpare();
  void keep(const std::shared_ptr<NativeWebView>& view, const WebViewOptions& options);
  void sweepLater();
  void dropStale();

  std::shared_ptr<WebEngine> engine_;
  std::vector<Idle> idle_;  // the oldest first
  std::vector<SharedProcess> processes_;
  int shared_ = 0;                        // pages so far that share their process
  std::shared_ptr<NativeWebView> spare_;  // for whichever slot needs one next
  Timer spareTimer_;                      // makes it, or drops it when nobody has come for it
  std::map<const void*, std::shared_ptr<ReloadBudget>> budgets_;
  Timer sweeper_;
};

}  // namespace tavo::gtk
