#include "AdManager/VerdictAccount.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "AdInfo/AnswerMembers.h"
#include "AdManager/MediationInstruction.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::size_t longestQuote = 60;

std::string quotation(std::string_view text) {
  const bool isCut = text.size() > longestQuote;
  return "\"" + validUtf8(text.substr(0, longestQuote)) + (isCut ? "...\"" : "\"");
}

std::string told(const std::optional<std::string>& text) {
  return isNilString(text) ? "not there" : quotation(std::string_view{*text});
}

std::string nameOf(AnswerRoute route) {
  switch (route) {
    case AnswerRoute::bidding:
      return "bidding";
    case AnswerRoute::redirect:
      return "redirect";
    case AnswerRoute::redirected:
      return "after a redirect";
    case AnswerRoute::normal:
      break;
  }
  return "normal";
}

std::string whyRoute(const XAdInfo& answer, AnswerRoute route) {
  switch (route) {
    case AnswerRoute::bidding:
      return "The slot asks for bids";
    case AnswerRoute::redirect:
      return answer.httpResponseCode == 302 ? "The status is 302" : "AdType is \"redirect\"";
    case AnswerRoute::redirected:
      return "A redirect led here, so the body is the ad itself";
    case AnswerRoute::normal:
      break;
  }
  return "AdType is " + told(answer.adType);
}

std::string whyNoAd(const XAdInfo& answer, const AnswerMembers& members, AnswerRoute route) {
  if (!members.problem.empty() && route == AnswerRoute::normal) return members.problem;
  if (route == AnswerRoute::redirected || route == AnswerRoute::redirect) {
    return "neither a file, a text nor a body that could be shown: its type is " +
           told(answer.MIMEType);
  }
  if (isNilString(answer.adType)) return "there is no AdType, and Text holds no VAST document";
  if (answer.adType == "text/html") return "AdType is \"text/html\", but there is no Text";
  if (answer.text && holdsMediationInstruction(*answer.text)) {
    return "Text asks for mediation, and nothing names a placement or nobody mediates";
  }
  return "nothing is made of the AdType " + told(answer.adType);
}

// What each verdict is called and rests on.
struct Words {
  const XAdInfo& answer;
  const AnswerMembers& members;
  const SlotFacts& slot;
  AnswerRoute route;
  using Pair = std::pair<std::string, std::string>;

  Pair operator()(const NoAd&) const { return {"no ad", whyNoAd(answer, members, route)}; }
  Pair operator()(const EmptyAd&) const {
    return {"empty ad", "the answer says that there is none: no AdType, or an empty body"};
  }
  Pair operator()(const FollowRedirect& verdict) const {
    return {"redirect", "FileUrl names the place of the ad: " + verdict.url};
  }
  Pair operator()(const ShowImage& verdict) const {
    return {"picture", "the type says image; the picture is " + quotation(verdict.picture.text())};
  }
  Pair operator()(const ShowHtml& verdict) const {
    return {"page", std::to_string(verdict.html.size()) + " bytes of HTML" +
                        (contains(verdict.html, "mraid.js") ? " that ask for mraid.js" : "")};
  }
  Pair operator()(const RefuseEmptyPicture&) const {
    return {"empty picture", "the page is nothing but one link around /default/empty.gif"};
  }
  Pair operator()(const PlayVast& verdict) const {
    return {"VAST", looksLikeVast(verdict.document)
                        ? "Text holds a VAST document"
                        : "AdType is \"text/xml\", though Text shows no VAST element"};
  }
  Pair operator()(const Mediate& verdict) const {
    return {"mediation", "Text hands the slot to placement " + quotation(verdict.placementId)};
  }
};

bool hasPart(std::string_view key, const Verdict& verdict) {
  constexpr std::array<std::string_view, 3> always{"ImpUrl", "ClkUrl", "AdType"};
  if (std::find(always.begin(), always.end(), key) != always.end()) return true;
  const bool isPicture = std::holds_alternative<ShowImage>(verdict);
  const bool goesOn = std::holds_alternative<FollowRedirect>(verdict);
  const bool isPage = std::holds_alternative<ShowHtml>(verdict);
  if (key == "FileUrl") return isPicture || goesOn || isPage;
  return key == "Text" && !isPicture && !goesOn;
}

void addDropped(const AnswerMembers& members, const Verdict& verdict,
                std::vector<InspectionField>& fields) {
  for (const auto& member : members.ad) {
    if (hasPart(member.key, verdict) || isNilString(member.text) || member.text.empty()) continue;
    fields.push_back({"dropped", member.key + " = " + quotation(member.text) +
                                     (member.isKnown ? ": has no effect" : ": not a known key")});
  }
  if (members.furtherAds > 0) {
    fields.push_back({"dropped", std::to_string(members.furtherAds) +
                                     " more in \"Ad\": only the first one is read"});
  }
  for (const auto& key : members.beside) {
    fields.push_back({"dropped", quotation(key) + " beside \"Ad\": not a known key"});
  }
}

}  // namespace

VerdictAccount accountOf(const XAdInfo& answer, const SlotFacts& slot, const Verdict& verdict,
                         int answerDepth) {
  const AnswerRoute route = routeOf(answer, slot);
  const bool isDocument = answer.responseContent && route != AnswerRoute::redirected;
  const AnswerMembers members =
      isDocument ? AnswerMembers::of(*answer.responseContent, answerDepth) : AnswerMembers{};
  const auto [name, reason] = std::visit(Words{answer, members, slot, route}, verdict);
  const std::string why = whyRoute(answer, route) + "; " + reason + ".";
  VerdictAccount account{name + ": " + why,
                         {{"verdict", name}, {"route", nameOf(route)}, {"why", why}}};
  addDropped(members, verdict, account.fields);
  return account;
}

}  // namespace tavo
