#pragma once

#include <webkit/webkit.h>

#include <memory>
#include <optional>
#include <string>

#include <tavo/Geometry.h>

#include "Gtk/GPtr.h"
#include "Gtk/ModuleSide/TapWatcher.h"
#include "Gtk/SignalConnections.h"
#include "Gtk/Web/CommandChannel.h"
#include "Gtk/Web/EvaluationQueue.h"
#include "Gtk/Web/FetchedBytes.h"
#include "Gtk/Web/FocusExit.h"
#include "Gtk/Web/LoadTracker.h"
#include "Gtk/Web/PageInspection.h"
#include "Gtk/Web/PagePolicy.h"
#include "Gtk/Web/PageTurnover.h"
#include "Gtk/Web/VisitedPage.h"
#include "Gtk/Web/WebEngine.h"

namespace tavo::gtk {

// Whoever shows a page in a native view hears of it here. Calls come from the engine's signals on
// the main thread, never inside a call to the native view.
class PageOwner : public PageJudge {
 public:
  virtual void pageStarted() = 0;
  virtual void pageFinished() = 0;
  virtual void pageFailed(const Error& error) = 0;
  // The web process has ended; whatever was under way is lost with it.
  virtual void pageProcessEnded(const Error& reason) = 0;
  // A person has tapped the page: a press and a release, seen by the widget before the page.
  virtual void pageTapped() = 0;
};

// One of the engine's web views. A fresh one costs thirty times what a used one does, and its
// memory is never quite given back, so it serves one owner after the other and is made blank in
// between. Main thread only.
class NativeWebView : public std::enable_shared_from_this<NativeWebView> {
 public:
  // `related`, when not null, is a view of the same kind whose web process this one shares. `pages`
  // counts the pages of that process.
  [[nodiscard]] static std::shared_ptr<NativeWebView> create(std::shared_ptr<WebEngine> engine,
                                                             PageKind kind,
                                                             const NativeWebView* related,
                                                             std::shared_ptr<int> pages);
  ~NativeWebView();
  NativeWebView(const NativeWebView&) = delete;
  NativeWebView& operator=(const NativeWebView&) = delete;

  // From now on `owner` hears of this view. It must have been released by the last one.
  // `slot` is whose page it is, for the inspection.
  void take(PageOwner& owner, const void* slot);
  // The owner is done. Nothing reaches it any more; the page, its scripts and history are dropped.
  void release();
  // Starts the web process of a view that has shown nothing yet, with the blank page.
  void warmUp() { turnover_.begin(); }

  // Replaces the page; waits for the blank page of an earlier owner first.
  void loadHtml(const std::string& html, const Url& baseUrl);
  void loadUrl(const Url& url, CachePolicy policy);
  void reload();
  // True when something was under way that is not reported any more.
  bool stopLoading();
  [[nodiscard]] bool isLoading() const;
  void addDocumentStartScript(const std::string& script);
  void evaluate(const std::string& script, const EvaluationQueue::Completion& completion);
  // Ends the web process; the owner hears of it as of any other end.
  void endProcess();

  // Lays the page out at `size` while the widget is not mapped: nobody else does then.
  void resize(Size size);
  [[nodiscard]] WebKitWebView* webKit() const { return view_.get(); }
  [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }
  [[nodiscard]] WebKitSettings* settings() const { return webkit_web_view_get_settings(webKit()); }
  // Whether the owner has shown a page before this one: its history begins behind the blank page.
  [[nodiscard]] bool canGoBack() const { return !turnover_.isFirstPage(); }
  // A script's step to the blank page is being refused; the engine has taken it in its list
  // already.
  void stayInHistory();

  // The web process has ended and no load has started another one.
  [[nodiscard]] bool isDead() const { return turnover_.isWithoutProcess(); }
  // Free, and nothing of the owner before is left in it.
  [[nodiscard]] bool isBlank() const;
  // The page has flooded its process with requests, or its owner is done and it has not answered
  // everything yet. The process may be about to be ended, with every page that shares it.
  [[nodiscard]] bool isClogged() const;
  // Its process has shown so many pages that another is to take its place.
  [[nodiscard]] bool isWorn() const { return isWorn(*pages_, engine_->services().limits); }
  [[nodiscard]] static bool isWorn(int pages, const Limits& limits) {
    return limits.pagesPerWebProcess > 0 && pages >= limits.pagesPerWebProcess;
  }

 private:
  NativeWebView(std::shared_ptr<WebEngine> engine, PageKind kind, const NativeWebView* related,
                std::shared_ptr<int> pages);

  void connectSignals();
  // The owner, while what the engine says is about the owner's page.
  [[nodiscard]] PageOwner* listener() const;
  void addScript(const std::string& script, WebKitUserContentInjectedFrames frames);
  void load(const Url& url, const std::function<void()>& start);

  static gboolean onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, NativeWebView* self);
  static GtkWidget* onCreate(WebKitWebView*, WebKitNavigationAction* action, NativeWebView* self);
  static void onLoadChanged(WebKitWebView*, WebKitLoadEvent event, NativeWebView* self);
  static gboolean onLoadFailed(WebKitWebView*, WebKitLoadEvent event, const char* url,
                               GError* error, NativeWebView* self);
  static void onRealized(WebKitWebView*, NativeWebView* self);
  static void onProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason reason,
                                  NativeWebView* self);
  void tellLoad(WebKitLoadEvent event);
  void noteCommand(const Url& command);
  void noteTap();
  void fetchedTooMuch();

  std::shared_ptr<WebEngine> engine_;
  const PageKind kind_;
  const std::shared_ptr<int> pages_;  // of its process
  GPtr<WebKitUserContentManager> content_;
  GPtr<WebKitWebView> view_;
  LoadTracker loads_;
  EvaluationQueue evaluations_;
  PageTurnover turnover_;
  PagePolicy policy_;
  CommandChannel commands_;
  PageOwner* owner_ = nullptr;
  std::uint64_t requests_ = 0;           // of the owner's page
  std::shared_ptr<void> watched_;        // while there is an owner
  std::optional<FetchedBytes> fetched_;  // none: a page that a person asked for
  std::optional<Error> endedFor_;        // why it is being ended from here
  SignalConnections connections_;
  std::unique_ptr<VisitedPage> visited_;       // null: a creative
  std::shared_ptr<PageInspection> inspected_;  // while somebody looks
  SlotInspection inspection_;
  TapWatcher taps_;
  FocusExit focusExit_;
};

}  // namespace tavo::gtk
