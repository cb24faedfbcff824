#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <tavo/Geometry.h>
#include <tavo/MobileAdTypes.h>
#include <tavo/Url.h>

#include "AdInfo/XAdInfo.h"

namespace tavo {

// The way that an answer takes.
enum class AnswerRoute {
  bidding,     // of a slot that takes part in real-time bidding
  redirect,    // names another address, or brings the ad in its own text or body
  redirected,  // came from the address that a redirect led to: the ad itself
  normal,
};

// What is to be done with an answer. One alternative per outcome; each holds all that its carrying
// out needs, so that nobody looks at the answer again.

// Nothing in the answer can be shown.
struct NoAd {};

// The server says that there is no ad.
struct EmptyAd {
  AnswerRoute route = AnswerRoute::bidding;
};

// The ad is at another address.
struct FollowRedirect {
  std::string url;
};

// Show a picture as sub-type `subType`.
struct ShowImage {
  Url picture;
  MobileAdSubTypes subType = MobileAdSubTypes::image;
};

// Show a page.
struct ShowHtml {
  std::string html;
  // None: a rich media ad of the view's type, unless the view knows better already.
  std::optional<MobileAdSubTypes> subType;
};

// The page is nothing but the server's transparent filler picture.
struct RefuseEmptyPicture {
  std::optional<MobileAdSubTypes> subType;
};

// Hand the slot to an external ad network.
struct Mediate {
  std::string placementId;
  Size size;  // points
};

// Play a VAST document.
struct PlayVast {
  std::string document;
};

using Verdict = std::variant<NoAd, EmptyAd, FollowRedirect, ShowImage, ShowHtml, RefuseEmptyPicture,
                             PlayVast, Mediate>;

// What the slot adds to the decision.
struct SlotFacts {
  bool realTimeBidding = false;
  bool interstitial = false;
  bool requestRedirected = false;  // the request followed a redirect answer
  bool canStartMediation = false;  // somebody listens who can
  bool standardsMode = false;      // every text that is a VAST document is played
  // Take the place of what a mediation instruction leaves out.
  std::string mediationPlacementId{};
  Size mediationSize{};
};

[[nodiscard]] AnswerRoute routeOf(const XAdInfo& answer, const SlotFacts& slot);

// Decides from the answer's texts alone; has no effect.
[[nodiscard]] Verdict classify(const XAdInfo& answer, const SlotFacts& slot);

// True for none and for the text "(null)" in any letter case: what a server left out.
[[nodiscard]] bool isNilString(const std::optional<std::string>& text);

// True for a page that holds exactly one link, one picture and the filler picture's address.
[[nodiscard]] bool isEmptyPicture(std::string_view html);

// True for text that is a VAST document of any version by the public standards, also where its
// opening tag has no attributes.
[[nodiscard]] bool isVastDocument(std::string_view text);

// True for text that holds a VAST document. Quirk: the opening tag must be followed by a blank, so
// that a tag that is closed at once does not count; servers rely on it to send such text as HTML.
[[nodiscard]] bool looksLikeVast(std::string_view text);

}  // namespace tavo
