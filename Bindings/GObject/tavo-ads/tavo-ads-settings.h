#pragma once

#include <glib-object.h>

G_BEGIN_DECLS

/**
 * TavoAdsSettings:
 *
 * Settings of the whole application. Set them before the first ad.
 */
#define TAVO_ADS_TYPE_SETTINGS (tavo_ads_settings_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsSettings, tavo_ads_settings, TAVO_ADS, SETTINGS, GObject)

/**
 * TavoAdsSettings:can-mediate:
 *
 * Hand-over of failed requests to an external ad network, where a slot has not set its own value:
 * 1 on, 0 off, -1 not set.
 */
/**
 * TavoAdsSettings:debug-logs:
 *
 * The debug log on the standard error stream. Slow when it is on.
 */
/**
 * TavoAdsSettings:location:
 *
 * Where the device is, for the external ad network, of the type `(ddd)`: latitude and longitude in
 * degrees, and the accuracy in metres. `NULL`: not told.
 */
/**
 * TavoAdsSettings:store-hosts:
 *
 * The hosts of an application store's web front, at most two, in lower case. Clicks that lead to
 * one of them open the store's sheet instead of a page.
 */
/**
 * TavoAdsSettings:store-page-prefix:
 *
 * The page of an application in the store is this text followed by the application's number.
 */
/**
 * TavoAdsSettings:browser-bar-at-top:
 *
 * Whether the toolbar of the browser inside the application stands at its top.
 */
/**
 * TavoAdsSettings:browser-bar-color:
 *
 * Colour of that toolbar. `NULL`: the platform's own.
 */
/**
 * TavoAdsSettings:browser-bar-image:
 *
 * Name of a picture among the program's resources that is painted behind the toolbar's buttons.
 * `NULL`: none.
 */
/**
 * TavoAdsSettings:standards-mode:
 *
 * Whether creatives of slots that have not set their own value are treated as the public standards
 * say (VAST 2.0 to 4.2, MRAID 2.0) where that differs from what the library does otherwise.
 */
/**
 * TavoAdsSettings:gdpr-consent:
 *
 * The user's TC string, which takes the place of `[GDPRCONSENT]` in the addresses of VAST
 * documents, unchanged but for percent-encoding. Empty: the macro stays. Read in the standards mode
 * only, as the further consent texts are.
 */
/**
 * TavoAdsSettings:gpp-string:
 *
 * The text for `[GPPSTRING]`.
 */
/**
 * TavoAdsSettings:gpp-section-id:
 *
 * The text for `[GPPSECTIONID]`, as "7" or "2,6".
 */
/**
 * TavoAdsSettings:regulations:
 *
 * The text for `[REGULATIONS]`, as "gdpr".
 */
/**
 * TavoAdsSettings:limit-ad-tracking:
 *
 * The text for `[LIMITADTRACKING]`, "1" or "0".
 */

/**
 * tavo_ads_settings_get_default:
 *
 * The application's settings, which are there once [func@TavoAds.init] has succeeded. Main thread.
 *
 * Returns: (transfer none) (nullable): the settings
 */
TavoAdsSettings* tavo_ads_settings_get_default(void);

/**
 * TavoAdsBrowserButton:
 * @TAVO_ADS_BROWSER_BUTTON_CLOSE: closes the browser
 * @TAVO_ADS_BROWSER_BUTTON_BACK: goes back
 * @TAVO_ADS_BROWSER_BUTTON_FORWARD: goes forward
 * @TAVO_ADS_BROWSER_BUTTON_RELOAD: loads the page again
 * @TAVO_ADS_BROWSER_BUTTON_OPEN_OUTSIDE: opens the page in the system's browser; hidden at first
 *
 * The buttons of the browser inside the application.
 */
typedef enum {
  TAVO_ADS_BROWSER_BUTTON_CLOSE = 0,
  TAVO_ADS_BROWSER_BUTTON_BACK = 1,
  TAVO_ADS_BROWSER_BUTTON_FORWARD = 2,
  TAVO_ADS_BROWSER_BUTTON_RELOAD = 3,
  TAVO_ADS_BROWSER_BUTTON_OPEN_OUTSIDE = 4,
} TavoAdsBrowserButton;

/**
 * tavo_ads_settings_set_browser_button_image:
 * @self: the settings
 * @button: a button
 * @image_name: (nullable): name of a picture among the program's resources; `NULL`: no picture
 *
 * Gives a button of the browser another picture.
 */
void tavo_ads_settings_set_browser_button_image(TavoAdsSettings* self, TavoAdsBrowserButton button,
                                                const char* image_name);

/**
 * tavo_ads_settings_set_browser_button_visible:
 * @self: the settings
 * @button: a button
 * @visible: whether it is there
 *
 * Shows a button of the browser, or hides it.
 */
void tavo_ads_settings_set_browser_button_visible(TavoAdsSettings* self,
                                                  TavoAdsBrowserButton button, gboolean visible);

G_END_DECLS
