#pragma once

#include <gtk/gtk.h>
#include <tavo-ads/tavo-ads-enums.h>

G_BEGIN_DECLS

/**
 * TavoAdsSlotSettings:
 *
 * Settings of one slot, or of several that share them.
 *
 * A change is seen by whatever reads the setting next.
 */
#define TAVO_ADS_TYPE_SLOT_SETTINGS (tavo_ads_slot_settings_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsSlotSettings, tavo_ads_slot_settings, TAVO_ADS, SLOT_SETTINGS, GObject)

/**
 * TavoAdsSlotSettings:standards-mode:
 *
 * Whether creatives are treated as the public standards say: 1 on, 0 off, -1 not set, so that
 * [property@TavoAds.Settings:standards-mode] counts. Read when an ad is asked for.
 */
/**
 * TavoAdsSlotSettings:refresh-interval:
 *
 * Seconds between two ads of a banner; 0 turns refresh off. Read when an ad has loaded.
 */
/**
 * TavoAdsSlotSettings:scaling-allowed:
 *
 * Whether a picture may be scaled to the slot.
 */
/**
 * TavoAdsSlotSettings:keep-aspect-ratio:
 *
 * Whether a picture that is scaled keeps its proportions.
 */
/**
 * TavoAdsSlotSettings:background:
 *
 * A pattern that is painted behind a slot without an ad.
 */
/**
 * TavoAdsSlotSettings:child-directed:
 *
 * Child-directed treatment: the request has no override of the place, and only the ad server's own
 * cookies go along.
 */
/**
 * TavoAdsSlotSettings:confine-pages:
 *
 * A page acts for the site that served the answer only. Turn it on where the ad server is not
 * trusted with the cookies of other sites.
 */
/**
 * TavoAdsSlotSettings:real-time-bidding:
 *
 * Asks for bids in real time.
 */
/**
 * TavoAdsSlotSettings:open-pages-inside:
 *
 * Whether the page behind a click opens in a browser inside the application.
 */
/**
 * TavoAdsSlotSettings:can-mediate:
 *
 * Whether the slot may be handed to an external ad network: 1 on, 0 off, -1 not set, so that
 * [property@TavoAds.Settings:can-mediate] counts.
 */
/**
 * TavoAdsSlotSettings:mediation-placement-id:
 *
 * The external network's name for the slot.
 */
/**
 * TavoAdsSlotSettings:mediation-width:
 *
 * Width of the ad to ask the external network for, in logical pixels; 0: not set.
 */
/**
 * TavoAdsSlotSettings:mediation-height:
 *
 * Height of the ad to ask the external network for, in logical pixels; 0: not set.
 */
/**
 * TavoAdsSlotSettings:mediation-age:
 *
 * The user's age in years, for the external network; -1: not told.
 */
/**
 * TavoAdsSlotSettings:mediation-gender:
 *
 * The user's gender, for the external network; -1: not told.
 */
/**
 * TavoAdsSlotSettings:mediation-keywords:
 *
 * Keywords for the external network, of the type `a{ss}`.
 */
/**
 * TavoAdsSlotSettings:countdown-position:
 *
 * Where the countdown and the skip text of a film stand.
 */
/**
 * TavoAdsSlotSettings:skip-offset:
 *
 * When a film may be skipped, in [property@TavoAds.SlotSettings:skip-unit]; -1: as the ad says.
 */
/**
 * TavoAdsSlotSettings:skip-unit:
 *
 * What the skip offset counts.
 */
/**
 * TavoAdsSlotSettings:end-film-after-click:
 *
 * Whether the ad ends when its viewer comes back from a click; otherwise it goes on.
 */
/**
 * TavoAdsSlotSettings:preferred-video-bitrate:
 *
 * In the standards mode: the bitrate, in kilobits a second, beyond which no file of a film is taken
 * while there is another one; 0: the best there is.
 */

/**
 * tavo_ads_slot_settings_new:
 *
 * Makes settings with the defaults.
 *
 * Returns: (transfer full): new settings
 */
TavoAdsSlotSettings* tavo_ads_slot_settings_new(void);

G_END_DECLS
