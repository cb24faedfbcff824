#include "Gtk/Web/PolicyQuestion.h"

#include <algorithm>
#include <array>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

WebKitNavigationAction* actionOf(WebKitPolicyDecision* navigation) {
  return webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(navigation));
}

bool wantsToBeSaved(WebKitURIResponse* response) {
  auto* headers = webkit_uri_response_get_http_headers(response);
  if (headers == nullptr) return false;
  char* disposition = nullptr;
  GHashTable* parameters = nullptr;
  if (soup_message_headers_get_content_disposition(headers, &disposition, &parameters) == FALSE) {
    return false;
  }
  const GText kind{disposition};
  g_hash_table_unref(parameters);
  return equalsIgnoringCase(textOf(kind.get()), "attachment");
}

}  // namespace

std::string urlText(WebKitPolicyDecision* navigation) {
  return textOf(
      webkit_uri_request_get_uri(webkit_navigation_action_get_request(actionOf(navigation))));
}

NavigationType navigationType(WebKitPolicyDecision* navigation) {
  switch (webkit_navigation_action_get_navigation_type(actionOf(navigation))) {
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

bool isRedirect(WebKitPolicyDecision* navigation) {
  return webkit_navigation_action_is_redirect(actionOf(navigation)) != FALSE;
}

std::string engineText(const Url& url) {
  const auto request = GPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(url.text().c_str()));
  return textOf(webkit_uri_request_get_uri(request.get()));
}

bool canBeFollowed(const Url& url) {
  constexpr std::array schemes{"http", "https", "about", "data", "blob"};
  return std::any_of(schemes.begin(), schemes.end(),
                     [&](const char* scheme) { return equalsIgnoringCase(url.scheme(), scheme); });
}

bool canBeShown(WebKitResponsePolicyDecision* response) {
  return webkit_response_policy_decision_is_mime_type_supported(response) != FALSE &&
         !wantsToBeSaved(webkit_response_policy_decision_get_response(response));
}

}  // namespace tavo::gtk
