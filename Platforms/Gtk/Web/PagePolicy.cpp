#include "Gtk/Web/PagePolicy.h"

#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/Web/PolicyQuestion.h"
#include "Values/Text.h"

namespace tavo::gtk {

// Shared with the questions that wait for the page, which may outlive the policy.
struct PagePolicy::Judgement {
  PagePolicy* policy = nullptr;
  PageJudge* judge = nullptr;
};

PagePolicy::PagePolicy(WebKitWebView* view, EvaluationQueue& evaluations, LoadTracker& loads,
                       int refreshes)
    : view_{view}, frames_{evaluations}, loads_{loads}, refreshLimit_{refreshes} {
  setJudge(nullptr);
}

PagePolicy::~PagePolicy() { *judgement_ = {}; }

void PagePolicy::setJudge(PageJudge* judge) {
  if (judgement_) *judgement_ = {};
  judgement_ = std::make_shared<Judgement>(Judgement{this, judge});
  expected_.clear();
  approved_.clear();
}

void PagePolicy::expect(const Url& url) {
  expected_ = engineText(url);
  refreshes_ = 0;
}

void PagePolicy::decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
  switch (type) {
    case WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION:
      return decideNavigation(decision);
    case WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION:
      return decideNewWindow(decision);
    case WEBKIT_POLICY_DECISION_TYPE_RESPONSE:
      return decideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision));
  }
}

void PagePolicy::decideNavigation(WebKitPolicyDecision* decision) {
  const std::string text = urlText(decision);
  Question question{GPtr<WebKitPolicyDecision>::share(decision), text, Url::fromText(text),
                    navigationType(decision)};
  if (judgement_->judge == nullptr || question.url.empty()) {
    return webkit_policy_decision_ignore(decision);
  }
  if (std::exchange(approved_, {}) == text) return webkit_policy_decision_use(decision);

  if (loads_.isRequested() && !expected_.empty() && text == expected_) {
    question.requested = true;
    expected_.clear();
    return answer(question, Frame::main);
  }
  if (question.url.scheme() == "mraid") return answer(question, Frame::inner);
  if (isRedirect(decision) && loads_.isProvisional()) return answer(question, Frame::main);
  askPage(question);
}

void PagePolicy::askPage(const Question& question) {
  frames_.find(question.text, [judgement = judgement_, question](Frame frame) {
    if (judgement->judge == nullptr) return webkit_policy_decision_ignore(question.decision.get());
    judgement->policy->answer(question, frame);
  });
}

bool PagePolicy::isOneRefreshTooMany(const Question& question, Frame frame) {
  if (question.requested || frame == Frame::inner) return false;
  // With a fragment it is a jump inside the page.
  const bool again = question.type == NavigationType::reload ||
                     (question.url == mainDocument() && question.url.fragment().empty());
  return again && ++refreshes_ > refreshLimit_;
}

void PagePolicy::answer(const Question& question, Frame frame) {
  auto* const decision = question.decision.get();
  if (isOneRefreshTooMany(question, frame)) {
    inspectRefusal(question.url, "refused: the page shows itself anew too often");
    return webkit_policy_decision_ignore(decision);
  }

  const auto judgement = judgement_;
  Url document = frame == Frame::main ? question.url : mainDocument();
  // Equal URLs would say that it is the main frame.
  if (frame == Frame::inner && document == question.url) document = {};
  const bool allowed = judgement->judge->pageShouldStart({question.url, document, question.type});
  // The judge may have given the page up in the meantime.
  const bool follow = allowed && judgement->judge != nullptr && canBeFollowed(question.url);
  if (follow) return webkit_policy_decision_use(decision);

  webkit_policy_decision_ignore(decision);
  if (judgement->judge == nullptr) return;
  if (!allowed && question.requested) {
    loads_.dropped();
    judgement->judge->pageRefusedRequest();
  }
  if (allowed) inspectRefusal(question.url, "refused: no page can be there");
  if (allowed && frame == Frame::main) judgement->judge->pageCannotShow(question.url);
}

// No second window: a document that a person's tap opens is shown in this page instead.
void PagePolicy::decideNewWindow(WebKitPolicyDecision* decision) {
  const Url url = Url::fromText(urlText(decision));
  const NavigationType type = navigationType(decision);
  const auto judgement = judgement_;
  const bool allowed = judgement->judge != nullptr && !url.empty() &&
                       judgement->judge->pageShouldStart({url, url, type});
  webkit_policy_decision_ignore(decision);
  if (allowed && judgement->judge != nullptr && type == NavigationType::linkClicked &&
      url.isHttp()) {
    approved_ = engineText(url);
    webkit_web_view_load_uri(view_, url.text().c_str());
  }
}

void PagePolicy::askForWindow(const Url& url) {
  const auto judgement = judgement_;
  if (judgement->judge == nullptr || url.empty()) return;
  (void)judgement->judge->pageShouldStart({url, url, NavigationType::newWindow});
}

void PagePolicy::decideResponse(WebKitResponsePolicyDecision* decision) {
  if (canBeShown(decision)) return webkit_policy_decision_use(WEBKIT_POLICY_DECISION(decision));

  const bool mainFrame =
      webkit_response_policy_decision_is_main_frame_main_resource(decision) != FALSE;
  const std::string type = textOf(
      webkit_uri_response_get_mime_type(webkit_response_policy_decision_get_response(decision)));
  const std::string reason = "A document of the type \"" + validUtf8(type) + "\" cannot be shown.";
  webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
  inspectRefusal(Url::fromText(textOf(webkit_uri_request_get_uri(
                     webkit_response_policy_decision_get_request(decision)))),
                 "refused: " + reason);
  if (mainFrame && judgement_->judge != nullptr) judgement_->judge->pageRefusedDocument(reason);
}

void PagePolicy::inspectRefusal(const Url& url, const std::string& why) const {
  if (!inspection_.isOn()) return;
  inspection_.tell(InspectionKind::navigation, why + ": " + url.text(),
                   {{"decision", why}, {"url", url.text()}});
}

Url PagePolicy::mainDocument() const {
  const char* text = webkit_web_view_get_uri(view_);
  return Url::fromText(text == nullptr ? blankPage : text);
}

}  // namespace tavo::gtk
