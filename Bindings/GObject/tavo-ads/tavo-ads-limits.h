#pragma once

#include <glib-object.h>

G_BEGIN_DECLS

/**
 * TavoAdsLimits:
 *
 * The bounds within which what comes from the network is kept.
 *
 * Each property is one bound, with the library's default. Set them before
 * [func@TavoAds.init_with_options] reads them; later changes have no effect. Times are seconds,
 * sizes bytes unless the name says otherwise.
 */
#define TAVO_ADS_TYPE_LIMITS (tavo_ads_limits_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsLimits, tavo_ads_limits, TAVO_ADS, LIMITS, GObject)

/**
 * TavoAdsLimits:request-idle-timeout:
 *
 * Seconds without a byte after which a request for an ad ends.
 */
/**
 * TavoAdsLimits:request-deadline:
 *
 * Seconds for the whole exchange, redirects included.
 */
/**
 * TavoAdsLimits:answer-bytes:
 *
 * Size of an ad server's answer, decoded.
 */
/**
 * TavoAdsLimits:answer-depth:
 *
 * Nesting of the JSON document.
 */
/**
 * TavoAdsLimits:http-redirects:
 *
 * Hops of one exchange.
 */
/**
 * TavoAdsLimits:redirect-answers:
 *
 * Answers in a row that name another ad.
 */
/**
 * TavoAdsLimits:automatic-request-distance:
 *
 * Seconds between two requests that nobody asked for.
 */
/**
 * TavoAdsLimits:cookies-per-answer:
 *
 * Cookies that one answer may set.
 */
/**
 * TavoAdsLimits:cookie-bytes:
 *
 * Name and value of a cookie together.
 */
/**
 * TavoAdsLimits:cookies-per-domain:
 *
 * Cookies of one domain.
 */
/**
 * TavoAdsLimits:cookies:
 *
 * Cookies in all.
 */
/**
 * TavoAdsLimits:cookie-life:
 *
 * Seconds that a cookie lives at most, whatever the server asks for.
 */
/**
 * TavoAdsLimits:vast-bytes:
 *
 * Size of a VAST document.
 */
/**
 * TavoAdsLimits:vast-nodes:
 *
 * Nodes of a VAST document.
 */
/**
 * TavoAdsLimits:vast-depth:
 *
 * Nesting of a VAST document.
 */
/**
 * TavoAdsLimits:vast-wrappers-in-ad:
 *
 * Wrappers beside one another in an ad.
 */
/**
 * TavoAdsLimits:wrapper-timeout:
 *
 * Seconds for one document of a wrapper chain.
 */
/**
 * TavoAdsLimits:wrapper-chain-budget:
 *
 * Seconds for all documents of a wrapper chain.
 */
/**
 * TavoAdsLimits:vast-wrapper-depth:
 *
 * Wrappers behind one another, in the standards mode.
 */
/**
 * TavoAdsLimits:vast-ads-in-break:
 *
 * Ads of an answer that are played or tried, in the standards mode.
 */
/**
 * TavoAdsLimits:vast-addresses:
 *
 * Addresses of one ad that are kept to be told, in the standards mode.
 */
/**
 * TavoAdsLimits:vast-address-bytes:
 *
 * Size of one such address with its macros filled in; a longer one is not told.
 */
/**
 * TavoAdsLimits:vast-icons:
 *
 * Icons that are drawn on one film, in the standards mode.
 */
/**
 * TavoAdsLimits:vast-media-tries:
 *
 * Files of one film that are looked for, in the standards mode.
 */
/**
 * TavoAdsLimits:media-probe-timeout:
 *
 * Seconds for the question whether a film is there.
 */
/**
 * TavoAdsLimits:first-frame-timeout:
 *
 * Seconds until the first picture of a film.
 */
/**
 * TavoAdsLimits:stall-timeout:
 *
 * Seconds that a film may stand still while it should play.
 */
/**
 * TavoAdsLimits:click-through-timeout:
 *
 * Seconds for finding out where a click leads.
 */
/**
 * TavoAdsLimits:ping-timeout:
 *
 * Seconds for one tracking ping.
 */
/**
 * TavoAdsLimits:queued-pings-per-host:
 *
 * Pings that wait for one host; the next one is dropped.
 */
/**
 * TavoAdsLimits:queued-pings:
 *
 * Pings that wait in all; the longest queue loses one.
 */
/**
 * TavoAdsLimits:ping-connections-per-host:
 *
 * Connections to one host for pings.
 */
/**
 * TavoAdsLimits:ping-connections:
 *
 * Connections for pings in all.
 */
/**
 * TavoAdsLimits:picture-bytes:
 *
 * Size of a picture.
 */
/**
 * TavoAdsLimits:picture-pixels:
 *
 * Pixels of a picture.
 */
/**
 * TavoAdsLimits:web-process-megabytes:
 *
 * Memory of a page's process, in megabytes.
 */
/**
 * TavoAdsLimits:web-process-ping:
 *
 * Seconds that a page may leave a question unanswered.
 */
/**
 * TavoAdsLimits:web-process-watch:
 *
 * Seconds between two looks at a page that is asked nothing else.
 */
/**
 * TavoAdsLimits:web-process-reloads-per-minute:
 *
 * How often a page that was lost is loaded again in a minute.
 */
/**
 * TavoAdsLimits:page-timeout:
 *
 * Seconds for a page to finish its load.
 */
/**
 * TavoAdsLimits:page-refreshes:
 *
 * Reloads that a page asks for itself.
 */
/**
 * TavoAdsLimits:page-bytes:
 *
 * Bytes that a page may load while nobody touches it.
 */
/**
 * TavoAdsLimits:page-processor-time:
 *
 * Seconds of processor time that a page may use in any window.
 */
/**
 * TavoAdsLimits:page-processor-window:
 *
 * Length of that window in seconds.
 */
/**
 * TavoAdsLimits:page-processor-total:
 *
 * Seconds of processor time in all; 0: as much as it likes.
 */
/**
 * TavoAdsLimits:commands-per-second:
 *
 * Commands of a creative in a second, sustained.
 */
/**
 * TavoAdsLimits:command-burst:
 *
 * Commands of a creative at a time.
 */
/**
 * TavoAdsLimits:leaving-actions-per-second:
 *
 * Actions that leave the application, without a tap, in a second.
 */
/**
 * TavoAdsLimits:leaving-actions-need-tap:
 *
 * Whether actions that leave the application need a person's tap.
 */
/**
 * TavoAdsLimits:tap-lifetime:
 *
 * Seconds for which a tap stands for the action that follows it.
 */
/**
 * TavoAdsLimits:widget-side:
 *
 * Longest side of a widget, in logical pixels.
 */

/**
 * tavo_ads_limits_new:
 *
 * Makes a set of limits with the defaults.
 *
 * Returns: (transfer full): a new set of limits
 */
TavoAdsLimits* tavo_ads_limits_new(void);

/**
 * tavo_ads_limits_unload_heavy_ads:
 * @self: limits
 *
 * Sets the budgets of a page to those at which browsers unload heavy ads. Which of them an ad has
 * passed is told as the code of its failure, in [error@TavoAds.PageError].
 */
void tavo_ads_limits_unload_heavy_ads(TavoAdsLimits* self);

G_END_DECLS
