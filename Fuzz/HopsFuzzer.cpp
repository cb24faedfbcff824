// Sends one request with secrets from server to server: the first line is its URL, every other the
// status, the target and the cookie of an answer, with tabs between them.

#include <algorithm>

#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessRunLoop.h"
#include "Lines.h"
#include "Rules/HttpHops.h"
#include "Values/Text.h"

using namespace tavo;
using fuzz::require;

namespace {

constexpr int redirectLimit = 20;

HttpResponse answer(const std::string& line, const Url& url) {
  HttpResponse head;
  head.url = url;
  head.status = 300 + (line.empty() ? 2 : line[0] % 10);
  const auto first = std::min(line.find('\t'), line.size());
  const auto second = std::min(line.find('\t', first + 1), line.size());
  if (first < line.size()) {
    head.headers.push_back({"Location", line.substr(first + 1, second - first - 1)});
  }
  if (second < line.size()) head.headers.push_back({"Set-Cookie", line.substr(second + 1)});
  return head;
}

void checkHop(const HttpRequest& hop, const HttpRequest& first) {
  require(isHttpTarget(hop.url));
  for (const auto& header : hop.headers) {
    require(!fuzz::hasControls(header.name) && !fuzz::hasControls(header.value));
  }
  const bool sameHost = equalsIgnoringCase(hop.url.host(), first.url.host());
  const bool falls = equalsIgnoringCase(first.url.scheme(), "https") &&
                     !equalsIgnoringCase(hop.url.scheme(), "https");
  require((hop.header("Authorization") != nullptr) == (sameHost && !falls));
  const auto* const cookies = hop.header("Cookie");
  if (cookies != nullptr && contains(*cookies, "own=secret")) require(sameHost);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto lines = fuzz::linesOf(data, size);
  // A server may send the same words as the secret by itself, which gives nothing away.
  const auto saysIt = [](const std::string& line) { return contains(line, "secret"); };
  if (std::any_of(lines.begin(), lines.end(), saysIt)) return 0;
  HttpRequest request;
  request.method = "POST";
  request.url = Url::fromText(std::string_view{lines.front()});
  request.body = "body";
  request.headers = {{"Authorization", "secret"}};
  request.extraCookies = {
      {.name = "own", .value = "secret", .domain = lowerCased(percentDecoded(request.url.host()))}};
  headless::HeadlessCookieStore store{std::make_shared<headless::HeadlessRunLoop>()};
  HttpHops hops{request, redirectLimit};
  int sent = 0;
  for (std::size_t line = 1; line < lines.size(); ++line) {
    const auto hop = hops.request(store, Date{});
    if (!hop) break;
    require(++sent <= redirectLimit + 1);
    checkHop(*hop, request);
    if (hops.take(answer(lines[line], hops.url()), store) != HttpHops::Next::follow) break;
  }
  return 0;
}
