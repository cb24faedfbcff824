// Lets one server set cookies by arbitrary headers, and looks at what is sent to another: the first
// two lines are their URLs.

#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessRunLoop.h"
#include "Lines.h"
#include "Rules/CookieRules.h"
#include "Values/Text.h"

using namespace tavo;
using fuzz::require;

namespace {

void checkSent(const Cookie& cookie, const Url& url) {
  const bool secure = equalsIgnoringCase(url.scheme(), "https");
  const std::string name = lowerCased(cookie.name);
  require(isStorable(cookie, Limits{}) && url.isHttp());
  require(secure || !cookie.secure);
  require(cookie.secure || (!name.starts_with("__host-") && !name.starts_with("__secure-")));
  require(!name.starts_with("__host-") || (cookie.path == "/" && cookie.domain[0] != '.'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto lines = fuzz::linesOf(data, size);
  lines.resize(std::max<std::size_t>(lines.size(), 2));
  const Url setter = Url::fromText(std::string_view{lines[0]});
  const Url asked = Url::fromText(std::string_view{lines[1]});
  std::vector<HttpHeader> headers;
  for (std::size_t line = 2; line < lines.size(); ++line) {
    headers.push_back({"Set-Cookie", lines[line]});
    (void)readCookieDate(lines[line]);
  }
  const auto loop = std::make_shared<headless::HeadlessRunLoop>();
  headless::HeadlessCookieStore store{loop};
  store.storeFromHeaders(headers, setter);
  for (const Url& url : {setter, asked}) {
    const auto cookies = store.cookiesFor(url);
    require(cookies.size() <= Limits{}.cookiesPerAnswer);
    for (const auto& cookie : cookies) checkSent(cookie, url);
    require(!fuzz::hasControls(cookieHeader(cookies)));
  }
  return 0;
}
