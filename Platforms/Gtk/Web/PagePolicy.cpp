#include "Gtk/Web/PagePolicy.h"

#include <array>
#include <utility>

#include "Gtk/GPtr.h"
#include "Gtk/Web/ScriptText.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

NavigationType typeOf(WebKitNavigationAction* action) {
  switch (webkit_navigation_action_get_navigation_type(action)) {
    case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
      return NavigationType::linkClicked;
    case WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED:
      return NavigationType::formSubmitted;
    case WEBKIT_NAVIGATION_TYPE_BACK_FORWARD:
      return NavigationType::backForward;
    case WEBKIT_NAVIGATION_TYPE_RELOAD:
      return NavigationType::reload;
    case WEBKIT_NAVIGATION_TYPE_FORM_RESUBMITTED:
      return NavigationType::formResubmitted;
    default:
      return NavigationType::other;
  }
}

// What the engine may fetch. Everything else it could only fail at, or, like a file, should never
// be asked for by a page out of the network.
bool canBeFollowed(const Url& url) {
  constexpr std::array schemes{"http", "https", "about", "data", "blob"};
  for (const auto* scheme : schemes) {
    if (equalsIgnoringCase(url.scheme(), scheme)) return true;
  }
  return false;
}

// The URL as the engine will write it in its questions.
std::string engineText(const Url& url) {
  const auto request = GPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(url.text().c_str()));
  const char* text = webkit_uri_request_get_uri(request.get());
  return text == nullptr ? std::string{} : text;
}

bool wantsToBeSaved(WebKitURIResponse* response) {
  auto* headers = webkit_uri_response_get_http_headers(response);
  if (headers == nullptr) return false;
  char* disposition = nullptr;
  GHashTable* parameters = nullptr;
  if (soup_message_headers_get_content_disposition(headers, &disposition, &parameters) == FALSE) {
    return false;
  }
  const GText text{disposition};
  g_hash_table_unref(parameters);
  return equalsIgnoringCase(text.get(), "attachment");
}

// "frame" when a frame that the page's world can see is to show the URL and does not yet.
std::string frameQuestion(const std::string& url) {
  return R"js((function (url) {
  function shows(frame) {
    try { return frame.contentWindow.location.href === url; } catch (error) { return false; }
  }
  function named(frame) {
    try { return new URL(frame.src || frame.data, frame.baseURI).href === url; }
    catch (error) { return false; }
  }
  function inside(frame) {
    try { return frame.contentDocument; } catch (error) { return null; }
  }
  function look(page, depth) {
    for (const frame of page.querySelectorAll('iframe, frame, object, embed')) {
      if (named(frame) && !shows(frame)) return true;
      const inner = depth < 8 ? inside(frame) : null;
      if (inner && look(inner, depth + 1)) return true;
    }
    return false;
  }
  return look(document, 0) ? 'frame' : 'main';
})js" + std::string{")("} +
         quotedForScript(url) + ")";
}

}  // namespace

// Shared with the questions that wait for the page, which may outlive the policy.
struct PagePolicy::Judgement {
  PagePolicy* policy = nullptr;
  PageJudge* judge = nullptr;
};

struct PagePolicy::Question {
  GPtr<WebKitPolicyDecision> decision;
  Url url;
  std::string text;  // of the URL, as the engine writes it
  NavigationType type = NavigationType::other;
  bool requested = false;  // the load that was asked for from outside
};

PagePolicy::PagePolicy(WebKitWebView* view, EvaluationQueue& evaluations, LoadTracker& loads,
                       int refreshes)
    : view_{view}, evaluations_{evaluations}, loads_{loads}, refreshLimit_{refreshes} {
  setJudge(nullptr);
}

PagePolicy::~PagePolicy() {
  judgement_->policy = nullptr;
  judgement_->judge = nullptr;
}

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

bool PagePolicy::allowBlankPage(WebKitPolicyDecision* navigation) {
  auto* action = webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(navigation));
  const char* text = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const bool isBlank = text != nullptr && std::string_view{text} == blankPage;
  if (isBlank) {
    webkit_policy_decision_use(navigation);
  } else {
    webkit_policy_decision_ignore(navigation);
  }
  return isBlank;
}

void PagePolicy::decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
  switch (type) {
    case WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION:
      return decideNavigation(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    case WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION:
      return decideNewWindow(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    case WEBKIT_POLICY_DECISION_TYPE_RESPONSE:
      return decideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision));
  }
}

void PagePolicy::decideNavigation(WebKitNavigationPolicyDecision* decision) {
  auto* action = webkit_navigation_policy_decision_get_navigation_action(decision);
  const char* text = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  Question question{GPtr<WebKitPolicyDecision>::share(WEBKIT_POLICY_DECISION(decision)),
                    Url::fromText(text == nullptr ? "" : text), text == nullptr ? "" : text,
                    typeOf(action)};
  if (judgement_->judge == nullptr || question.url.empty()) {
    return webkit_policy_decision_ignore(question.decision.get());
  }
  if (std::exchange(approved_, {}) == question.text) {
    return webkit_policy_decision_use(question.decision.get());
  }

  if (loads_.isRequested() && !expected_.empty() && question.text == expected_) {
    question.requested = true;
    expected_.clear();
    return answer(question, true);
  }
  if (question.url.scheme() == "mraid") return answer(question, false);
  if (webkit_navigation_action_is_redirect(action) != FALSE && loads_.isProvisional()) {
    return answer(question, true);
  }
  askPage(question);
}

void PagePolicy::askPage(const Question& question) {
  evaluations_.evaluate(frameQuestion(question.text), EvaluationQueue::World::isolated,
                        [judgement = judgement_, question](const std::string& found) {
                          if (judgement->judge == nullptr) {
                            return webkit_policy_decision_ignore(question.decision.get());
                          }
                          judgement->policy->answer(question, found != "frame");
                        });
}

bool PagePolicy::isOneRefreshTooMany(const Question& question, bool mainFrame) {
  if (question.requested || !mainFrame) return false;
  // With a fragment it is a jump inside the page.
  const bool again = question.type == NavigationType::reload ||
                     (question.url == mainDocument() && question.url.fragment().empty());
  return again && ++refreshes_ > refreshLimit_;
}

void PagePolicy::answer(const Question& question, bool mainFrame) {
  if (isOneRefreshTooMany(question, mainFrame)) {
    return webkit_policy_decision_ignore(question.decision.get());
  }
  const auto judgement = judgement_;
  const Url document = mainFrame ? question.url : mainDocument();
  const bool allowed = judgement->judge->pageShouldStart(
      {question.url, !mainFrame && document == question.url ? Url{} : document, question.type});
  // The judge may have given the page up in the meantime.
  const bool follow = allowed && judgement->judge != nullptr && canBeFollowed(question.url);
  if (follow) return webkit_policy_decision_use(question.decision.get());

  webkit_policy_decision_ignore(question.decision.get());
  if (judgement->judge == nullptr) return;
  if (!allowed && question.requested) {
    loads_.dropped();
    judgement->judge->pageRefusedRequest();
  }
  if (allowed && mainFrame) judgement->judge->pageCannotShow(question.url);
}

void PagePolicy::decideNewWindow(WebKitNavigationPolicyDecision* decision) {
  auto* action = webkit_navigation_policy_decision_get_navigation_action(decision);
  auto* request = webkit_navigation_action_get_request(action);
  const char* text = webkit_uri_request_get_uri(request);
  const Url url = Url::fromText(text == nullptr ? "" : text);
  const NavigationType type = typeOf(action);
  const auto judgement = judgement_;
  const bool allowed = judgement->judge != nullptr && !url.empty() &&
                       judgement->judge->pageShouldStart({url, url, type});
  webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
  if (allowed && judgement->judge != nullptr && type == NavigationType::linkClicked &&
      url.isHttp()) {
    approved_ = engineText(url);
    webkit_web_view_load_uri(view_, url.text().c_str());
  }
}

void PagePolicy::decideResponse(WebKitResponsePolicyDecision* decision) {
  auto* response = webkit_response_policy_decision_get_response(decision);
  const bool shown = webkit_response_policy_decision_is_mime_type_supported(decision) != FALSE &&
                     !wantsToBeSaved(response);
  if (shown) return webkit_policy_decision_use(WEBKIT_POLICY_DECISION(decision));

  const bool mainFrame =
      webkit_response_policy_decision_is_main_frame_main_resource(decision) != FALSE;
  const char* type = webkit_uri_response_get_mime_type(response);
  const std::string reason =
      "A document of the type \"" + validUtf8(type == nullptr ? "" : type) + "\" cannot be shown.";
  webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
  if (mainFrame && judgement_->judge != nullptr) judgement_->judge->pageRefusedDocument(reason);
}

Url PagePolicy::mainDocument() const {
  const char* text = webkit_web_view_get_uri(view_);
  return Url::fromText(text == nullptr ? blankPage : text);
}

}  // namespace tavo::gtk
