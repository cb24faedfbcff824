#include "AdManager/AdVerdict.h"

#include <algorithm>

#include "AdManager/MediationInstruction.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr int httpFound = 302;

MobileAdSubTypes redirectPage(const SlotFacts& slot) {
  return slot.interstitial ? MobileAdSubTypes::redirectInterstitial
                           : MobileAdSubTypes::redirectHtmlBanner;
}

MobileAdSubTypes redirectImage(const SlotFacts& slot) {
  return slot.interstitial ? MobileAdSubTypes::redirectInterstitial
                           : MobileAdSubTypes::redirectImageBanner;
}

Url requestedUrl(const XAdInfo& answer) {
  return answer.httpRequestURL ? answer.httpRequestURL->url : Url{};
}

Verdict page(const std::optional<std::string>& html, std::optional<MobileAdSubTypes> subType) {
  if (isNilString(html)) return NoAd{};
  if (isEmptyPicture(*html)) return RefuseEmptyPicture{subType};
  return ShowHtml{*html, subType};
}

// A placement can come from the instruction or from the slot; without either there is no ad.
Verdict classifyMediation(const std::string& text, const SlotFacts& slot) {
  const MediationInstruction instruction = readMediationInstruction(text);
  Mediate mediate{instruction.placementId, instruction.size};
  if (mediate.placementId.empty()) mediate.placementId = slot.mediationPlacementId;
  if (mediate.size.width < 1) mediate.size.width = slot.mediationSize.width;
  if (mediate.size.height < 1) mediate.size.height = slot.mediationSize.height;
  if (mediate.placementId.empty()) return NoAd{};
  return mediate;
}

// The answer of an ordinary request, and every document that claims to be one. An instruction to
// mediate takes precedence over whatever type the answer claims.
Verdict classifyContent(const XAdInfo& answer, const SlotFacts& slot) {
  if (slot.canStartMediation && answer.text && holdsMediationInstruction(*answer.text)) {
    return classifyMediation(*answer.text, slot);
  }
  if (looksLikeVast(answer.text.value_or("")) || answer.adType == "text/xml") {
    return PlayVast{answer.text.value_or("")};
  }
  if (!isNilString(answer.adType) && contains(*answer.adType, "image")) {
    return ShowImage{Url::fromText(answer.fileURL.value_or("")), MobileAdSubTypes::image};
  }
  if (answer.adType == "text/html") return page(answer.text, std::nullopt);
  return NoAd{};
}

Verdict classifyBidding(const XAdInfo& answer, const SlotFacts& slot) {
  if (isNilString(answer.adType)) return EmptyAd{AnswerRoute::bidding};
  if (answer.adType == "text/xml") return classifyContent(answer, slot);
  return page(answer.text, slot.interstitial ? MobileAdSubTypes::richMediaInterstitial
                                             : MobileAdSubTypes::richMediaBanner);
}

bool isRedirect(const XAdInfo& answer) {
  return answer.httpResponseCode == httpFound ||
         (!isNilString(answer.adType) && equalsIgnoringCase(*answer.adType, "redirect"));
}

// An answer that redirects: to a file, or with the ad in its own text or body.
Verdict classifyRedirect(const XAdInfo& answer, const SlotFacts& slot) {
  if (!isNilString(answer.fileURL)) return FollowRedirect{*answer.fileURL};
  if (!isNilString(answer.text)) return page(answer.text, redirectPage(slot));
  if (isNilString(answer.MIMEType)) return NoAd{};
  if (contains(*answer.MIMEType, "image")) {
    return ShowImage{requestedUrl(answer), redirectImage(slot)};
  }
  if (!contains(*answer.MIMEType, "text")) return NoAd{};
  if (isNilString(answer.responseContent)) return EmptyAd{AnswerRoute::redirect};
  return page(answer.responseContent, redirectPage(slot));
}

// The answer of the address that a redirect led to: the ad itself, no longer a description of it.
Verdict classifyRedirected(const XAdInfo& answer, const SlotFacts& slot) {
  if (contains(*answer.MIMEType, "image")) {
    return ShowImage{requestedUrl(answer), redirectImage(slot)};
  }
  if (contains(*answer.MIMEType, "text") && !isNilString(answer.responseContent)) {
    return page(answer.responseContent, redirectPage(slot));
  }
  return NoAd{};
}

}  // namespace

bool isNilString(const std::optional<std::string>& text) {
  return !text || equalsIgnoringCase(*text, "(null)");
}

bool isEmptyPicture(std::string_view html) {
  return occurrences(html, "<a href") == 1 && occurrences(html, "<img ") == 1 &&
         occurrences(html, "/default/empty.gif") == 1;
}

bool isVastDocument(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  for (text = trimmed(text); text.starts_with("<?") || text.starts_with("<!");
       text = trimmed(text)) {
    const std::string_view end = text.starts_with("<!--") ? "-->" : ">";
    text.remove_prefix(std::min(text.find(end), text.size() - end.size()) + end.size());
  }
  const auto name = text.substr(0, text.find_first_of(" \t\r\n>/"));
  return name == "<VAST" || name == "<VideoAdServingTemplate";
}

bool looksLikeVast(std::string_view text) {
  return contains(text, "<VAST ") && contains(text, "</VAST>");
}

AnswerRoute routeOf(const XAdInfo& answer, const SlotFacts& slot) {
  if (slot.realTimeBidding) return AnswerRoute::bidding;
  if (isRedirect(answer)) return AnswerRoute::redirect;
  const bool isAdItself = slot.requestRedirected && !isNilString(answer.MIMEType);
  return isAdItself ? AnswerRoute::redirected : AnswerRoute::normal;
}

namespace {

Verdict classifyByRoute(const XAdInfo& answer, const SlotFacts& slot) {
  switch (routeOf(answer, slot)) {
    case AnswerRoute::bidding:
      return classifyBidding(answer, slot);
    case AnswerRoute::redirect:
      return classifyRedirect(answer, slot);
    case AnswerRoute::redirected:
      return classifyRedirected(answer, slot);
    case AnswerRoute::normal:
      return classifyContent(answer, slot);
  }
  return NoAd{};
}

}  // namespace

Verdict classify(const XAdInfo& answer, const SlotFacts& slot) {
  Verdict verdict = classifyByRoute(answer, slot);
  const auto* const page = std::get_if<ShowHtml>(&verdict);
  if (slot.standardsMode && page != nullptr && isVastDocument(page->html)) {
    return PlayVast{page->html};
  }
  return verdict;
}

}  // namespace tavo
