#include "UserInterface/WebView/InAppBrowser/ErrorPage.h"

#include <string_view>

#include <tavo/WebView.h>

#include "Values/Text.h"
#include "Values/Translation.h"

namespace tavo {

namespace {

// Why, for a person. The system's reasons are in their language already; the library's own are
// written for developers.
std::string reasonOf(const Error& error) {
  constexpr std::size_t longestReason = 500;  // bytes
  const auto isOwn = [&](std::string_view domain, int code) {
    return error.domain == domain && error.code == code;
  };
  if (isOwn(transportErrorDomain, static_cast<int>(TransportError::timedOut))) {
    return translated("The page did not load in time.");
  }
  if (isOwn(webErrorDomain, webProcessGoneError)) {
    return translated("The page has stopped working.");
  }
  if (isOwn(webErrorDomain, webEngineUnavailableError)) {
    return translated("This device cannot show pages.");
  }
  return error.description.substr(0, longestReason);
}

std::string markup(const char* text) { return asMarkup(translated(text)); }

}  // namespace

std::string errorPage(const Url& page, const Error& error) {
  const std::string place{page.host().empty() ? std::string_view{page.text()} : page.host()};
  return "<!doctype html><meta charset=utf-8><meta name=viewport content=\"width=device-width\">"
         "<title>" +
         markup(toTranslate("Page not shown")) +
         "</title><style>body{font:16px/1.5 sans-serif;margin:15% 10% 0;"
         "color:#333;background:#fafafa;overflow-wrap:anywhere}h1{font-size:1.25em}a{color:#1a5fb4}"
         "</style><h1>" +
         markup(toTranslate("This page cannot be shown")) + "</h1><p><b>" + asMarkup(place) +
         "</b></p><p>" + asMarkup(reasonOf(error)) + "</p>" +
         (page.isHttp() ? "<p><a href=\"" + asMarkup(page.text()) + "\">" +
                              markup(toTranslate("Try again")) + "</a></p>"
                        : std::string{});
}

}  // namespace tavo
