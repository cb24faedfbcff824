#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <vector>

#include "Gtk/GPtr.h"
#include "Gtk/Web/WebEngine.h"

namespace tavo::gtk {

// The way of a native view from one owner's page to the next: the page before is replaced by the
// blank one, and what the next owner asks for meanwhile waits until that is there. Its process may
// end on any stage of the way. Main thread only.
class PageTurnover {
 public:
  // `endProcess` is called for a page that does not let itself be replaced.
  PageTurnover(WebKitWebView* view, std::shared_ptr<WebEngine> engine,
               std::function<void()> endProcess);
  ~PageTurnover();
  PageTurnover(const PageTurnover&) = delete;
  PageTurnover& operator=(const PageTurnover&) = delete;

  // The owner is done with the page. A turn later, for this may be one of the engine's signals, it
  // is silent, and what it has stored is dropped. The way to the blank page begins when somebody
  // waits at its end, else when the slot's next page has had time to load.
  void leave();
  // Asks for the blank page at once, as for a view that has shown nothing yet.
  void begin();
  [[nodiscard]] bool isUnderWay() const;

  // Calls `run` as soon as the view is blank, or with the owner's page; at once if it is. `drop`,
  // in a turn of its own, if that never happens.
  void whenThere(std::function<void()> run, std::function<void()> drop = {});
  [[nodiscard]] bool isSomethingWaiting() const { return !waiting_.empty(); }
  void dropWaiting();

  // The engine's reports while the way lasts. What it says before it has asked about the blank page
  // is of the page before.
  void decide(WebKitPolicyDecision* navigation);
  void noteLoad(WebKitLoadEvent event);
  // What the engine reports of the process, at any time.
  void noteProcessRuns();
  void noteProcessEnded();
  // To be called in a turn after the process has ended on the way: there is nothing left to wait
  // for.
  void finishWithoutProcess();

  // The process has ended, and no load has started another one.
  [[nodiscard]] bool isWithoutProcess() const;

  // Where an owner's history begins: the engine keeps the blank page in it.
  [[nodiscard]] bool isFirstPage() const;
  [[nodiscard]] bool isBlankPage() const;

 private:
  // In the order of the way.
  enum class Stage {
    open,           // blank, or with the owner's page
    ended,          // the same, but its process is gone
    leaving,        // the owner is done, nothing is asked for yet
    blankAsked,     // for the blank page
    blankBegun,     // the engine has asked about it
    emptying,       // it is there; what the page before has stored is still being dropped
    endedUnderWay,  // the process went with the page before; the next load starts another one
  };

  void silence();
  void beginAfter(Seconds delay);
  void finish();

  WebKitWebView* view_;
  std::shared_ptr<WebEngine> engine_;
  std::function<void()> endProcess_;
  Stage stage_ = Stage::open;
  bool isSilent_ = true;
  bool isEmptied_ = true;                      // of what the page has stored
  GPtr<WebKitBackForwardListItem> blankItem_;  // null in a view that has never been on its way
  Timer deadline_;                             // of the way's beginning, then of the blank page
  struct Waiting {
    std::function<void()> run;
    std::function<void()> drop;
  };
  std::vector<Waiting> waiting_;
  std::shared_ptr<PageTurnover*> self_ = std::make_shared<PageTurnover*>(this);
};

}  // namespace tavo::gtk
