#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

#include "Gtk/Web/StatementBatch.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

// Scripts on their way through one page, and the watch over them. The engine keeps their order. A
// page whose script loops answers nothing any more, and no property of the engine tells: so an
// evaluation that stays unanswered is taken for a sign of it.
class EvaluationQueue {
 public:
  using Completion = std::function<void(const std::string& result)>;

  // Where a script runs: among the page's own, or in a world that sees the document but shares no
  // object with the page's scripts.
  enum class World { page, isolated };

  // `unanswered` is called when an evaluation has been outstanding for `patience`, or for twice
  // that while those before it are answered. What else the page sends is no answer.
  EvaluationQueue(WebKitWebView* view, std::shared_ptr<RunLoop> runLoop, Seconds patience,
                  std::function<void()> unanswered);
  ~EvaluationQueue();
  EvaluationQueue(const EvaluationQueue&) = delete;
  EvaluationQueue& operator=(const EvaluationQueue&) = delete;

  // Statements that nobody waits for are evaluated together when the turn ends, or before the next
  // one that somebody waits for. `completion` is called once, later, whatever becomes of the page
  // or this queue; "" where there is no result.
  void evaluate(const std::string& script, World world, Completion completion);

  // Asks for a sign of life, unless there is something that the page has to answer anyway.
  void ping();

  // Evaluates now what has been gathered: before the page is replaced.
  void flush();

  // The web process is known to run from now on, or not to. The watch is off while it is not: a
  // process may take its time to start.
  void setProcessRuns(bool runs);

  [[nodiscard]] int outstanding() const;

 private:
  struct Watch;
  struct Evaluation;

  void run(const std::string& text, World world, Completion completion);
  static void finished(GObject* view, GAsyncResult* result, gpointer evaluation);

  WebKitWebView* view_;
  std::shared_ptr<Watch> watch_;
  StatementBatch batch_;
  std::shared_ptr<EvaluationQueue*> self_ = std::make_shared<EvaluationQueue*>(this);
};

}  // namespace tavo::gtk
