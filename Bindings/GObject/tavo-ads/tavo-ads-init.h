#pragma once

#include <tavo-ads/tavo-ads-options.h>

G_BEGIN_DECLS

/**
 * tavo_ads_init:
 * @application_id: the application's own id, which names the folders of what is kept
 * @error: return location for an error
 *
 * Sets the library up for the process, with the defaults of [class@TavoAds.Options].
 *
 * Call it once, on the thread that runs the main loop; it sets the toolkit up when that was not
 * done. Widgets of this library may be made before, but they load nothing. Calling it again with
 * the same id does nothing. The library ends with the process; nothing has to be freed.
 *
 * Returns: whether the library can be used
 */
gboolean tavo_ads_init(const char* application_id, GError** error);

/**
 * tavo_ads_init_with_options:
 * @options: what the library has to know of the program
 * @error: return location for an error
 *
 * The same as [func@TavoAds.init], with more to say.
 *
 * Returns: whether the library can be used
 */
gboolean tavo_ads_init_with_options(TavoAdsOptions* options, GError** error);

/**
 * tavo_ads_is_initialized:
 *
 * Tells whether the library was set up. Any thread.
 *
 * Returns: `TRUE` after [func@TavoAds.init] has succeeded
 */
gboolean tavo_ads_is_initialized(void);

/**
 * tavo_ads_get_version:
 *
 * The version of the library, for example "2.2.2". Any thread.
 *
 * Returns: (transfer none): the version
 */
const char* tavo_ads_get_version(void);

G_END_DECLS
