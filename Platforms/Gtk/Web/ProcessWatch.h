#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/Error.h>
#include <tavo/Inspection.h>
#include <tavo/Limits.h>

#include "Gtk/Web/ProcessorAlarm.h"
#include "Gtk/Web/WebProcesses.h"
#include "Services/Log.h"
#include "Services/RunLoop.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// Looks at the engine's web processes from outside, for one that is busy does not look at itself:
// ends those that take too much memory, and those that burn the processor while no person has
// touched an ad. The engine does not say which page is in which process, and moves pages: so a
// touch, or a new page, counts for all. Pages that do next to nothing wake nobody: the watch sleeps
// then, until the system says that a process has begun to use the processor. Main thread only.
class ProcessWatch {
 public:
  // A null inspection hears nothing.
  ProcessWatch(std::shared_ptr<RunLoop> runLoop, std::shared_ptr<Log> log, const Limits& limits,
               std::shared_ptr<Inspection> inspection = nullptr);

  ~ProcessWatch();
  ProcessWatch(const ProcessWatch&) = delete;
  ProcessWatch& operator=(const ProcessWatch&) = delete;

  // A page has an owner for as long as what is returned lives, which must not outlive the watch.
  // Without pages nobody looks; while a person browses nobody looks at the processor. `ping` asks
  // the page for a sign of life, each `webProcessWatch` while the watch is awake.
  [[nodiscard]] std::shared_ptr<void> pageBegins(PageKind kind, std::function<void()> ping);
  void pageLoads();
  // A page navigates by itself: it may be in another process from now on.
  void pageMoves() { wake(); }
  void touched();
  [[nodiscard]] bool isBrowsing() const { return browsers_ > 0; }

  // Why a process was ended that has just gone; nothing when it was not ended from here.
  [[nodiscard]] std::optional<Error> reason() const;

 private:
  struct Use {
    std::deque<std::pair<Seconds, Seconds>> looks{};  // when, and the processor time used by then
    Seconds start{};                                  // that time at the last touch or new page
    std::optional<Seconds> pausedAt{};
    std::optional<Error> pausedFor{};  // while it is paused
  };

  void pageEnds(PageKind kind, int page);
  void wake();
  void lookLater();
  void look();
  void looked(const std::vector<WebProcess>& processes);
  [[nodiscard]] bool isCalm(const std::vector<WebProcess>& processes);
  void sleep(const std::vector<WebProcess>& processes);
  void pingAll();
  void follow(const WebProcess& process, Use& use);
  [[nodiscard]] std::optional<Error> judge(const WebProcess& process, const Use& use) const;
  void pause(int id, Use& use, Error error);
  void end(int id, Error error);
  void blame(Error error);
  void note(const std::string& what) const;

  std::shared_ptr<RunLoop> runLoop_;
  std::shared_ptr<Log> log_;
  std::shared_ptr<Inspection> inspection_;
  const Limits limits_;
  int pages_ = 0;
  int browsers_ = 0;
  Seconds lastLoad_{};
  bool startsAnew_ = false;
  std::map<int, Use> uses_;
  std::optional<std::pair<Seconds, Error>> blamed_;
  Timer timer_;
  bool isLooking_ = false;  // a worker is
  Timer heartbeat_;
  std::map<int, std::function<void()>> pings_;  // by page
  int lastPage_ = 0;
  int calmLooks_ = 0;                 // in a row
  std::map<int, Seconds> processor_;  // used by the last look
  bool asleep_ = false;
  std::vector<std::unique_ptr<ProcessorAlarm>> alarms_;  // while it sleeps
  std::shared_ptr<ProcessWatch*> self_ = std::make_shared<ProcessWatch*>(this);
};

}  // namespace tavo::gtk
