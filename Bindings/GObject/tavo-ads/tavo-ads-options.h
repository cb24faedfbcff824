#pragma once

#include <tavo-ads/tavo-ads-enums.h>
#include <tavo-ads/tavo-ads-limits.h>

G_BEGIN_DECLS

/**
 * TavoAdsOptions:
 *
 * What the library has to know of a program before the first ad.
 *
 * Only the application id must be given. Folders and files are absolute paths.
 */
#define TAVO_ADS_TYPE_OPTIONS (tavo_ads_options_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsOptions, tavo_ads_options, TAVO_ADS, OPTIONS, GObject)

/**
 * TavoAdsOptions:application-id:
 *
 * Names the folders of cookies, settings and the error log; use the application's own id.
 */
/**
 * TavoAdsOptions:application-version:
 *
 * The program's version, as its users know it.
 */
/**
 * TavoAdsOptions:data-folder:
 *
 * Folder for what the library keeps. `NULL` or empty: the user's own for the application.
 */
/**
 * TavoAdsOptions:resource-folder:
 *
 * Folder with the program's own pictures that its settings name. `NULL` or empty: none.
 */
/**
 * TavoAdsOptions:module-folder:
 *
 * Where the library's modules lie, for a program that carries them in a place of its own: an
 * absolute path. Empty: where the library is installed.
 */
/**
 * TavoAdsOptions:library-resource-folder:
 *
 * The same for the library's own scripts and pictures.
 */
/**
 * TavoAdsOptions:assume-reachable:
 *
 * Requests are sent even when the system sees no network: for a server on this machine.
 */
/**
 * TavoAdsOptions:ad-network-library:
 *
 * The shared library of an external ad network. `NULL` or empty: the one that the environment
 * variable `TAVO_AD_NETWORK` names, or none. It runs inside the program, with all its rights. A
 * network in the program's own language is registered with [func@TavoAds.register_network].
 */
/**
 * TavoAdsOptions:orientation-fit:
 *
 * How ads that allow one orientation only are shown in a window of the other shape.
 */
/**
 * TavoAdsOptions:limits:
 *
 * The bounds of everything that comes from the network. `NULL`: the defaults.
 */

/**
 * tavo_ads_options_new:
 * @application_id: the application's own id
 *
 * Makes options with the defaults.
 *
 * Returns: (transfer full): new options
 */
TavoAdsOptions* tavo_ads_options_new(const char* application_id);

G_END_DECLS
