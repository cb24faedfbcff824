#include "UserInterface/WebView/InAppBrowser/ErrorPage.h"

#include <string_view>

#include "Values/Text.h"

namespace tavo {

std::string errorPage(const Url& page, const Error& error) {
  constexpr std::size_t longestReason = 500;  // bytes
  const std::string place{page.host().empty() ? std::string_view{page.text()} : page.host()};
  return "<!doctype html><meta charset=utf-8><meta name=viewport content=\"width=device-width\">"
         "<title>Page not shown</title><style>body{font:16px/1.5 sans-serif;margin:15% 10% 0;"
         "color:#333;background:#fafafa;overflow-wrap:anywhere}h1{font-size:1.25em}a{color:#1a5fb4}"
         "</style><h1>This page cannot be shown</h1><p><b>" +
         asMarkup(place) + "</b></p><p>" + asMarkup(error.description.substr(0, longestReason)) +
         "</p>" +
         (page.isHttp() ? "<p><a href=\"" + asMarkup(page.text()) + "\">Try again</a></p>"
                        : std::string{});
}

}  // namespace tavo
