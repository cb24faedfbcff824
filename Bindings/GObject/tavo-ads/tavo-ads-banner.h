#pragma once

#include <gtk/gtk.h>
#include <tavo-ads/tavo-ads-slot.h>

G_BEGIN_DECLS

/**
 * TavoAdsBanner:
 *
 * A widget that shows a banner.
 *
 * It asks the layout for the size of the ad and stands centred where it is given more. Expanded ads
 * leave it for a layer above the window's content; it keeps its place meanwhile. The ad is
 * refreshed on a timer while it is visible. It follows the widget: moved inside its window it keeps
 * running, and a widget that has left its window lets go of it.
 *
 * ```python
 * banner = TavoAds.Banner(domain="ads.example.com/delivery", page="news/front", position="Top")
 * banner.connect("failed", lambda banner, error: banner.set_visible(False))
 * box.append(banner)
 * banner.load()
 * ```
 */
#define TAVO_ADS_TYPE_BANNER (tavo_ads_banner_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsBanner, tavo_ads_banner, TAVO_ADS, BANNER, GtkWidget)

/**
 * TavoAdsBanner:ad-width:
 *
 * Width of the slot in logical pixels.
 */
/**
 * TavoAdsBanner:ad-height:
 *
 * Height of the slot in logical pixels.
 */
/**
 * TavoAdsBanner:expanded:
 *
 * Whether the ad fills the window.
 */
/**
 * TavoAdsBanner:mediated:
 *
 * Whether an external network fills the slot.
 */

/**
 * TavoAdsBanner::expanded:
 * @self: the banner
 *
 * The ad has expanded to the whole window.
 */
/**
 * TavoAdsBanner::collapsed:
 * @self: the banner
 *
 * An expanded ad has returned to its place.
 */
/**
 * TavoAdsBanner::film-dismissed:
 * @self: the banner
 *
 * A film that was shown above the window was dismissed.
 */

/**
 * tavo_ads_banner_new:
 *
 * Makes a banner of 320 by 50.
 *
 * Returns: (transfer floating): a new banner
 */
GtkWidget* tavo_ads_banner_new(void);

/**
 * tavo_ads_banner_refresh:
 * @self: a banner
 *
 * Starts or stops the refresh timer, by the settings and by what the banner shows. The library does
 * so after every ad; call it after a change of what decides.
 */
void tavo_ads_banner_refresh(TavoAdsBanner* self);

/**
 * tavo_ads_banner_get_expanded:
 * @self: a banner
 *
 * Tells whether the ad fills the window.
 *
 * Returns: `TRUE` while it does
 */
gboolean tavo_ads_banner_get_expanded(TavoAdsBanner* self);

/**
 * tavo_ads_banner_collapse:
 * @self: a banner
 *
 * Leads an expanded ad back to its place, as its close button does.
 */
void tavo_ads_banner_collapse(TavoAdsBanner* self);

G_END_DECLS
