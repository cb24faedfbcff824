#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

#include <tavo/WebView.h>

#include "Gtk/Web/EvaluationQueue.h"
#include "Gtk/Web/LoadTracker.h"

namespace tavo::gtk {

// Whoever decides about a page's navigations.
class PageJudge {
 public:
  virtual ~PageJudge() = default;
  // False refuses. `mainFrame` tells what the policy found out about the frame.
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
// Which frame navigates. The engine's question does not say. Known at once: the load that was asked
// for from outside and the redirects of the main document are the main frame's; commands (mraid)
// are answered at once, in order, as a frame's. Otherwise the page is asked, in a world of its own,
// whether a frame element of its document or of a readable document inside names the URL and has
// not shown it yet; the answer to the engine waits for that. What remains: a frame of another
// origin that navigates itself, or a frame inside it, cannot be told from the main frame, and is
// taken for it. The main frame taken for a frame needs a page that at the same time loads that very
// URL into a frame.
class PagePolicy {
 public:
  // A page may show itself anew `refreshes` times before that is refused without a question.
  PagePolicy(WebKitWebView* view, EvaluationQueue& evaluations, LoadTracker& loads, int refreshes);
  ~PagePolicy();
  PagePolicy(const PagePolicy&) = delete;
  PagePolicy& operator=(const PagePolicy&) = delete;

  // Null: everything is refused, questions that wait for their answer too.
  void setJudge(PageJudge* judge);

  // The next navigation to `url` is one that was asked for from outside.
  void expect(const Url& url);

  // Answers a navigation while the view is being made blank: true when it leads there.
  static bool allowBlankPage(WebKitPolicyDecision* navigation);
  // Takes the engine's question; answers it now or later.
  void decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);

 private:
  struct Judgement;
  struct Question;

  void decideNavigation(WebKitNavigationPolicyDecision* decision);
  void decideNewWindow(WebKitNavigationPolicyDecision* decision);
  void decideResponse(WebKitResponsePolicyDecision* decision);
  void askPage(const Question& question);
  void answer(const Question& question, bool mainFrame);
  [[nodiscard]] bool isOneRefreshTooMany(const Question& question, bool mainFrame);
  [[nodiscard]] Url mainDocument() const;

  WebKitWebView* view_;
  EvaluationQueue& evaluations_;
  LoadTracker& loads_;
  std::shared_ptr<Judgement> judgement_;
  const int refreshLimit_;
  int refreshes_ = 0;  // of the page itself, since the last load from outside
  std::string expected_;
  std::string approved_;  // a new window's document that is shown in this page instead
};

}  // namespace tavo::gtk
