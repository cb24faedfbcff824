#pragma once

#include <tavo-ads/tavo-ads-player.h>
#include <tavo-ads/tavo-ads-slot.h>

G_BEGIN_DECLS

/**
 * TavoAdsPreroll:
 *
 * An ad that is played before a film, in the player of that film.
 *
 * Give it a [class@TavoAds.Player] and load; the ad plays by itself. Whatever comes of it,
 * [signal@TavoAds.Preroll::finished] is told in the end, or [signal@TavoAds.Slot::failed] when
 * there was no request, and the program starts its film there. A page or a picture has no place
 * here: an answer that brings one fails.
 *
 * ```python
 * player = TavoAds.Player(uri="https://example.com/film.webm")
 * ad = TavoAds.Preroll(player=player, domain="ads.example.com", page="films", position="Pre")
 * ad.connect("finished", lambda ad: player.play())
 * ad.load()
 * ```
 */
#define TAVO_ADS_TYPE_PREROLL (tavo_ads_preroll_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsPreroll, tavo_ads_preroll, TAVO_ADS, PREROLL, GObject)

/**
 * TavoAdsPreroll:player:
 *
 * The player that is lent for the ad. Another one counts from the next load on.
 */

/**
 * TavoAdsPreroll::finished:
 * @self: the pre-roll
 *
 * The ad ended, or there was none; the player has the program's film back.
 */

/**
 * tavo_ads_preroll_new:
 * @player: (nullable): the player that is lent for the ad
 *
 * Makes a pre-roll.
 *
 * Returns: (transfer full): a new pre-roll
 */
TavoAdsPreroll* tavo_ads_preroll_new(TavoAdsPlayer* player);

G_END_DECLS
