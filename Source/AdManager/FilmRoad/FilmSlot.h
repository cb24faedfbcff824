#pragma once

#include <functional>
#include <memory>

#include <tavo/Error.h>
#include <tavo/MoviePlayer.h>

#include "AdManager/AdManagerView.h"
#include "Runtime/Environment.h"
#include "Runtime/SlotInspection.h"
#include "Services/HttpClient.h"
#include "UserInterface/NativeView/XVASTVideoView.h"

namespace tavo {

// The slot that a film is sought for, and what every road to a film does with it. Main thread only.
struct FilmSlot {
  std::shared_ptr<Environment> environment;
  std::weak_ptr<AdManagerView> adView;
  std::shared_ptr<MoviePlayer> moviePlayerInstance;  // the host's, for a pre-roll
  std::shared_ptr<XAdSlotConfiguration> slotConfiguration;
  std::shared_ptr<const XVASTVidoeViewDelegate> videoEvents;  // for the film once it is there

  [[nodiscard]] bool isInterstitial() const;
  // A film needs the whole screen, or a player of the host.
  [[nodiscard]] bool canPlay() const { return isInterstitial() || moviePlayerInstance; }
  [[nodiscard]] SlotInspection inspection() const;

  // What asks for the documents on the way to one film; the inspection hears of each.
  using Fetch = std::function<void(const Url&, Seconds timeout, HttpCompletion)>;
  [[nodiscard]] Fetch documents() const;
  // Asks whether the film's file is there.
  [[nodiscard]] std::shared_ptr<HttpClient::Exchange> probe(const Url& film,
                                                            HttpCompletion completion) const;

  void takeView(AdManagerView& view) const { view.setMobileAdSubTypes(subType()); }
  void furnish(XVASTVideoView& film) const;
  // Only a film of an interstitial stands in the slot itself.
  static void show(AdManagerView& view, const std::shared_ptr<XVASTVideoView>& film);
  // Ends a film that nobody is to hear of any more; the pointer is empty before that.
  static void drop(std::shared_ptr<XVASTVideoView>& film);

 private:
  [[nodiscard]] MobileAdSubTypes subType() const;
};

[[nodiscard]] bool hasDocument(const HttpResult& result);

// Why a slot that cannot play a film has none.
[[nodiscard]] Error playerMissing();

}  // namespace tavo
