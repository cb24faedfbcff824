#pragma once

#include <gtk/gtk.h>

G_BEGIN_DECLS

/**
 * TavoAdsNetworkAd:
 *
 * One ad of an external network that the program brings: derive from it, and register the classes
 * with [func@TavoAds.register_network].
 *
 * The library makes the object, sets the properties that say what is asked for, and calls
 * [vfunc@TavoAds.NetworkAd.load]. The network answers once, later, with
 * [method@TavoAds.NetworkAd.received] or [method@TavoAds.NetworkAd.failed]; what it tells after
 * that, or when nobody waits any more, is ignored. It may answer from any thread.
 */
#define TAVO_ADS_TYPE_NETWORK_AD (tavo_ads_network_ad_get_type())
G_DECLARE_DERIVABLE_TYPE(TavoAdsNetworkAd, tavo_ads_network_ad, TAVO_ADS, NETWORK_AD, GObject)

/**
 * TavoAdsNetworkAdClass:
 * @parent_class: the parent class
 * @load: asks the network for the ad
 * @present: shows an interstitial
 *
 * What a network's ad does.
 */
struct _TavoAdsNetworkAdClass {
  GObjectClass parent_class;

  /**
   * TavoAdsNetworkAdClass::load:
   * @self: the ad
   *
   * Asks the network for the ad. Called once, on the main thread; must not block.
   */
  void (*load)(TavoAdsNetworkAd* self);

  /**
   * TavoAdsNetworkAdClass::present:
   * @self: the ad
   * @window: (nullable): the window of the slot
   *
   * Shows an interstitial, which the network lets the user close. Called on the main thread inside
   * the turn in which the ad was received.
   */
  void (*present)(TavoAdsNetworkAd* self, GtkWindow* window);

  /*< private >*/
  gpointer padding[8];
};

/**
 * TavoAdsNetworkAd:placement-id:
 *
 * The network's own name for the slot.
 */
/**
 * TavoAdsNetworkAd:interstitial:
 *
 * Whether an ad on the whole window is asked for, or else a banner.
 */
/**
 * TavoAdsNetworkAd:width:
 *
 * Width of the ad that is asked for, in logical pixels; 0 for an interstitial.
 */
/**
 * TavoAdsNetworkAd:height:
 *
 * Height of the ad that is asked for, in logical pixels; 0 for an interstitial.
 */
/**
 * TavoAdsNetworkAd:open-pages-outside:
 *
 * Whether a click opens its page outside the application.
 */
/**
 * TavoAdsNetworkAd:age:
 *
 * The user's age; -1 where it is not known.
 */
/**
 * TavoAdsNetworkAd:gender:
 *
 * The user's gender: 0 where it is not known, else 1 or 2.
 */
/**
 * TavoAdsNetworkAd:keywords:
 *
 * Keywords of the program, of the type `a{ss}`.
 */
/**
 * TavoAdsNetworkAd:location:
 *
 * Where the device is, of the type `(ddd)`: latitude and longitude in degrees, and the accuracy in
 * metres. `NULL`: not known.
 */
/**
 * TavoAdsNetworkAd:widget:
 *
 * What shows a banner. The network sets it before it tells that the ad was received.
 */

/**
 * tavo_ads_network_ad_received:
 * @self: an ad
 *
 * The ad is there: the widget of a banner is shown, and an interstitial is asked to present itself.
 * Any thread.
 */
void tavo_ads_network_ad_received(TavoAdsNetworkAd* self);

/**
 * tavo_ads_network_ad_failed:
 * @self: an ad
 * @code: the network's own code
 * @message: one sentence for a developer
 *
 * There is no ad. The slot fails with [error@TavoAds.NetworkError] and this code. Any thread.
 */
void tavo_ads_network_ad_failed(TavoAdsNetworkAd* self, int code, const char* message);

/**
 * tavo_ads_network_ad_clicked:
 * @self: an ad
 *
 * The user has clicked. Any thread.
 */
void tavo_ads_network_ad_clicked(TavoAdsNetworkAd* self);

/**
 * tavo_ads_network_ad_opened:
 * @self: an ad
 *
 * The ad has opened something above the application. Any thread.
 */
void tavo_ads_network_ad_opened(TavoAdsNetworkAd* self);

/**
 * tavo_ads_network_ad_closed:
 * @self: an ad
 *
 * What the ad had opened is gone; for an interstitial, the ad itself. Any thread.
 */
void tavo_ads_network_ad_closed(TavoAdsNetworkAd* self);

/**
 * tavo_ads_network_ad_leaves_application:
 * @self: an ad
 *
 * A click leads out of the application. Any thread.
 */
void tavo_ads_network_ad_leaves_application(TavoAdsNetworkAd* self);

/**
 * tavo_ads_register_network:
 * @banner_type: a class derived from [class@TavoAds.NetworkAd], or `G_TYPE_NONE`
 * @interstitial_type: another or the same, or `G_TYPE_NONE`
 * @error: return location for an error
 *
 * Registers the classes of an external ad network that the program brings itself. They win over a
 * library, and replace those of an earlier call; `G_TYPE_NONE` takes one back.
 *
 * Returns: whether both can be used
 */
gboolean tavo_ads_register_network(GType banner_type, GType interstitial_type, GError** error);

G_END_DECLS
