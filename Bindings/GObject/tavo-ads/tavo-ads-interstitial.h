#pragma once

#include <gtk/gtk.h>
#include <tavo-ads/tavo-ads-slot.h>

G_BEGIN_DECLS

/**
 * TavoAdsInterstitial:
 *
 * An ad on the whole window.
 *
 * Load it, and present it once it has loaded. It leaves the screen by its close button, by the
 * Escape key, by the ad's own request, after a failure, and when the screen is locked or the
 * application goes to the background. While it is on the screen it holds itself. It may load again
 * after it was closed.
 *
 * ```python
 * ad = TavoAds.Interstitial(domain="ads.example.com/delivery", page="news/front", position="Full")
 * ad.connect("loaded", lambda ad: ad.present(window))
 * ad.connect("dismissed", lambda ad: next_level())
 * ad.connect("failed", lambda ad, error: next_level())
 * ad.load()
 * ```
 */
#define TAVO_ADS_TYPE_INTERSTITIAL (tavo_ads_interstitial_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsInterstitial, tavo_ads_interstitial, TAVO_ADS, INTERSTITIAL, GObject)

/**
 * TavoAdsInterstitial:presented:
 *
 * Whether the ad is on the screen.
 */

/**
 * TavoAdsInterstitial::dismissed:
 * @self: the interstitial
 *
 * The ad is off the screen, and the program goes on. Told once for each time that it was there,
 * except after a failure, which was told.
 */

/**
 * tavo_ads_interstitial_new:
 *
 * Makes an interstitial.
 *
 * Returns: (transfer full): a new interstitial
 */
TavoAdsInterstitial* tavo_ads_interstitial_new(void);

/**
 * tavo_ads_interstitial_present:
 * @self: an interstitial that has loaded
 * @window: the window to present it in
 * @error: return location for an error
 *
 * Shows the ad above the content of a window, which it fills. It takes all input until it is gone.
 *
 * Returns: whether it is on the screen
 */
gboolean tavo_ads_interstitial_present(TavoAdsInterstitial* self, GtkWindow* window,
                                       GError** error);

/**
 * tavo_ads_interstitial_close:
 * @self: an interstitial
 *
 * What its close button does. Does nothing when the ad is not on the screen.
 */
void tavo_ads_interstitial_close(TavoAdsInterstitial* self);

G_END_DECLS
