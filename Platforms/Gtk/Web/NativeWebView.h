#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Geometry.h>

#include "Gtk/GPtr.h"
#include "Gtk/Web/EvaluationQueue.h"
#include "Gtk/Web/LoadTracker.h"
#include "Gtk/Web/PagePolicy.h"
#include "Gtk/Web/SignalConnections.h"
#include "Gtk/Web/TapWatcher.h"
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
  virtual void pageProcessEnded(const std::string& reason) = 0;
  // A person has tapped the page: a press and a release, seen by the widget before the page.
  virtual void pageTapped() = 0;
};

// One of the engine's web views. A fresh one costs thirty times what a used one does, and its
// memory is never quite given back, so it serves one owner after the other and is made blank in
// between. Main thread only.
class NativeWebView : public std::enable_shared_from_this<NativeWebView> {
 public:
  // `related`, when not null, is a view whose web process this one shares.
  [[nodiscard]] static std::shared_ptr<NativeWebView> create(std::shared_ptr<WebEngine> engine,
                                                             const NativeWebView* related);
  ~NativeWebView();
  NativeWebView(const NativeWebView&) = delete;
  NativeWebView& operator=(const NativeWebView&) = delete;

  // From now on `owner` hears of this view. It must have been blanked since the last one.
  void take(PageOwner& owner);
  // The owner is done. Nothing reaches it any more; the page, its scripts and history are dropped.
  void release();

  // Replaces the page; waits for the blank page of an earlier owner first.
  void loadHtml(const std::string& html, const Url& baseUrl);
  void loadUrl(const Url& url, CachePolicy policy);
  void reload();
  // True when something was under way that is not reported any more.
  bool stopLoading();
  void addDocumentStartScript(const std::string& script);
  void evaluate(const std::string& script, const EvaluationQueue::Completion& completion);
  // Ends the web process; the owner hears of it as of any other end.
  void endProcess();

  // Lays the page out at `size` while the widget has no parent to do it.
  void resize(Size size);
  [[nodiscard]] WebKitWebView* webKit() const { return view_.get(); }
  [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }
  [[nodiscard]] WebKitSettings* settings() const { return webkit_web_view_get_settings(webKit()); }
  // Whether the owner has shown a page before this one: its history begins behind the blank page.
  [[nodiscard]] bool canGoBack() const;
  // A script's step to the blank page is being refused; the engine has taken it in its list
  // already.
  void stayInHistory();
  [[nodiscard]] bool isLoading() const { return !waiting_.empty() || loads_.isLoading(); }
  // The web process has ended and no load has started another one.
  [[nodiscard]] bool isDead() const { return dead_; }
  // The page has flooded its process with requests, or its owner is done and it has not answered
  // everything yet. The process may be about to be ended, with every page that shares it.
  [[nodiscard]] bool isClogged() const;

 private:
  NativeWebView(std::shared_ptr<WebEngine> engine, const NativeWebView* related);

  void connectSignals();
  // What was asked for while the blank page was still on its way.
  struct Waiting {
    std::function<void()> run;
    std::function<void()> drop;
  };

  void beginBlank();
  void noteBlankLoad(WebKitLoadEvent event);
  void becomeClean();
  void whenClean(std::function<void()> run, std::function<void()> drop = {});
  void dropWaiting();
  void takeMessage(JSCValue* message);

  static gboolean onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, NativeWebView* self);
  static void onLoadChanged(WebKitWebView*, WebKitLoadEvent event, NativeWebView* self);
  static gboolean onLoadFailed(WebKitWebView*, WebKitLoadEvent event, const char* url,
                               GError* error, NativeWebView* self);
  static void onProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason reason,
                                  NativeWebView* self);
  static void onMessage(WebKitUserContentManager*, JSCValue* message, NativeWebView* self);
  void noteTap();
  void noteSignOfLife();

  std::shared_ptr<WebEngine> engine_;
  GPtr<WebKitUserContentManager> content_;
  GPtr<WebKitWebView> view_;
  GPtr<WebKitBackForwardListItem>
      blankItem_;  // in the history; null in a view that began unblanked
  LoadTracker loads_;
  EvaluationQueue evaluations_;
  PagePolicy policy_;
  PageOwner* owner_ = nullptr;
  bool blanking_ = false;     // the blank page was asked for and has not come yet
  bool blankBegins_ = false;  // the engine has asked about it
  bool dead_ = false;
  std::uint64_t requests_ = 0;  // of the page, since it was clean
  Timer blankDeadline_;
  Timer heartbeat_;
  std::vector<Waiting> waiting_;
  SignalConnections connections_;
  TapWatcher taps_;
};

}  // namespace tavo::gtk
