#pragma once

#include <webkit/webkit.h>

#include <memory>
#include <string>

#include <tavo/WebView.h>

#include "Gtk/GPtr.h"
#include "Gtk/Web/FrameFinder.h"
#include "Gtk/Web/LoadTracker.h"
#include "Runtime/SlotInspection.h"

namespace tavo::gtk {

// Whoever decides about a page's navigations.
class PageJudge {
 public:
  virtual ~PageJudge() = default;
  // False refuses. The main document's URL tells what was found out about the frame.
  virtual bool pageShouldStart(const Navigation& navigation) = 0;
  // A navigation that was allowed, yet leads where no page can be: it is not followed.
  virtual void pageCannotShow(const Url& url) = 0;
  // The main document that arrives is none that can be shown, or wants to be saved as a file.
  virtual void pageRefusedDocument(const std::string& reason) = 0;
  // The load that was asked for from outside was refused.
  virtual void pageRefusedRequest() = 0;
};

// Answers the engine's questions about navigations, new windows and responses.
//
// Which frame navigates is known at once for the load that was asked for from outside and the
// redirects of the main document (the main frame) and for commands (mraid: answered at once, in
// order, as a frame's). Otherwise the page is asked, and the answer to the engine waits for that.
class PagePolicy {
 public:
  // A page may show itself anew `refreshes` times before that is refused without a question.
  PagePolicy(WebKitWebView* view, EvaluationQueue& evaluations, LoadTracker& loads, int refreshes);
  ~PagePolicy();
  PagePolicy(const PagePolicy&) = delete;
  PagePolicy& operator=(const PagePolicy&) = delete;

  // Null: everything is refused, questions that wait for their answer too.
  void setJudge(PageJudge* judge);

  // Hears what is refused here, without the judge.
  void setInspection(SlotInspection inspection) { inspection_ = std::move(inspection); }

  // The next navigation to `url` is one that was asked for from outside.
  void expect(const Url& url);

  // Takes the engine's question; answers it now or later.
  void decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);

  // A script of the page wants a window that shows `url`. It gets none, the judge hears of it.
  void askForWindow(const Url& url);

 private:
  struct Judgement;
  struct Question {
    GPtr<WebKitPolicyDecision> decision;
    std::string text;  // of the URL, as the engine writes it
    Url url;
    NavigationType type = NavigationType::other;
    bool requested = false;  // the load that was asked for from outside
  };
  using Frame = FrameFinder::Frame;

  void decideNavigation(WebKitPolicyDecision* decision);
  void decideNewWindow(WebKitPolicyDecision* decision);
  void decideResponse(WebKitResponsePolicyDecision* decision);
  void askPage(const Question& question);
  void answer(const Question& question, Frame frame);
  [[nodiscard]] bool isOneRefreshTooMany(const Question& question, Frame frame);
  [[nodiscard]] Url mainDocument() const;

  WebKitWebView* view_;
  FrameFinder frames_;
  LoadTracker& loads_;
  std::shared_ptr<Judgement> judgement_;
  void inspectRefusal(const Url& url, const std::string& why) const;

  SlotInspection inspection_;
  const int refreshLimit_;
  int refreshes_ = 0;  // of the page itself, since the last load from outside
  std::string expected_;
  std::string approved_;  // a new window's document that is shown in this page instead
};

}  // namespace tavo::gtk
