#pragma once

#include <glib-object.h>
#include <tavo-ads/tavo-ads-enums.h>

G_BEGIN_DECLS

/**
 * TavoAdsPing:
 *
 * What became of one tracking ping: an element of [class@TavoAds.Ledger].
 *
 * Its state, status, error and time follow the ping and are notified.
 */
#define TAVO_ADS_TYPE_PING (tavo_ads_ping_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsPing, tavo_ads_ping, TAVO_ADS, PING, GObject)

/**
 * TavoAdsPing:number:
 *
 * Its number in the order in which they became due, from 1.
 */
/**
 * TavoAdsPing:url:
 *
 * Where it goes.
 */
/**
 * TavoAdsPing:context:
 *
 * What is tracked, for example "trackImpressions".
 */
/**
 * TavoAdsPing:due:
 *
 * When the ad asked for it.
 */
/**
 * TavoAdsPing:state:
 *
 * Where it stands.
 */
/**
 * TavoAdsPing:status:
 *
 * The HTTP status; 0 before an answer.
 */
/**
 * TavoAdsPing:error:
 *
 * Why the transport gave up.
 */
/**
 * TavoAdsPing:took:
 *
 * Seconds from sending to the end of the exchange.
 */

G_END_DECLS
