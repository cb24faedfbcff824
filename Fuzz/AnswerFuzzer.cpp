// Judges arbitrary answers of an ad server: the first byte says of what slot, how the answer came
// and of what type it is, the rest is the body.

#include <string>
#include <variant>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/XJSONResponseParser.h"
#include "AdManager/AdVerdict.h"
#include "AdManager/PageBase.h"
#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessPlatform.h"
#include "Headless/HeadlessRunLoop.h"
#include "Lines.h"

using namespace tavo;
using fuzz::require;

namespace {

bool bit(std::uint8_t flags, int number) { return ((flags >> number) & 1) != 0; }

void checkPage(const ShowHtml& page, const Url& base) {
  static const headless::HeadlessCookieStore sites{std::make_shared<headless::HeadlessRunLoop>()};
  const BasedPage confined =
      confinedPage(page.html, base, Url::parse("http://ads.example/"), sites);
  require(confined.html.size() >= page.html.size());
  require(confined.base.empty() || confined.html == page.html);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static const Runtime runtime{headless::HeadlessPlatform{}.platform()};
  const std::uint8_t flags = data[0];
  const std::string body{reinterpret_cast<const char*>(data + 1), size - 1};
  const auto document = XJSONResponseParser::parseJSONResponseWithData(body);
  XAdInfo answer{document ? &*document : nullptr};
  answer.responseContent = body;
  answer.httpResponseCode = bit(flags, 0) ? 302 : 200;
  if (bit(flags, 1)) answer.MIMEType = bit(flags, 2) ? "image/png" : "text/html";
  const SlotFacts slot{.realTimeBidding = bit(flags, 3),
                       .interstitial = bit(flags, 4),
                       .requestRedirected = bit(flags, 5),
                       .canStartMediation = bit(flags, 6),
                       .mediationPlacementId = bit(flags, 7) ? "7" : "",
                       .mediationSize = {320, 50}};
  const AnswerRoute route = routeOf(answer, slot);
  require((route == AnswerRoute::bidding) == slot.realTimeBidding);
  const Verdict verdict = classify(answer, slot);
  if (const auto* way = std::get_if<FollowRedirect>(&verdict)) require(!isNilString(way->url));
  if (const auto* deal = std::get_if<Mediate>(&verdict)) {
    require(slot.canStartMediation && !deal->placementId.empty());
    require(deal->size.width >= 1 && deal->size.height >= 1);
  }
  if (const auto* page = std::get_if<ShowHtml>(&verdict)) {
    require(!isEmptyPicture(page->html));
    checkPage(*page, Url::fromText(answer.fileURL.value_or("")));
  }
  return 0;
}
