#pragma once

#include <gio/gio.h>
#include <tavo-ads/tavo-ads-ping.h>

G_BEGIN_DECLS

/**
 * TavoAdsLedger:
 *
 * The book of the tracking pings (impressions, clicks, events of films), oldest first, as a list
 * model of [class@TavoAds.Ping].
 *
 * The last 1,000 are kept. The totals count all of them since the library was set up: once nothing
 * is under way, `due` is the sum of the four ends. Reading the book changes nothing on the wire.
 */
#define TAVO_ADS_TYPE_LEDGER (tavo_ads_ledger_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsLedger, tavo_ads_ledger, TAVO_ADS, LEDGER, GObject)

/**
 * TavoAdsLedger:due:
 *
 * How many pings became due.
 */
/**
 * TavoAdsLedger:sent:
 *
 * How many were sent.
 */
/**
 * TavoAdsLedger:answered:
 *
 * How many were answered.
 */
/**
 * TavoAdsLedger:failed:
 *
 * How many the transport gave up.
 */
/**
 * TavoAdsLedger:suppressed:
 *
 * How many were not sent because the network was away.
 */
/**
 * TavoAdsLedger:dropped:
 *
 * How many were not sent because too many were waiting.
 */

/**
 * tavo_ads_ledger_get_default:
 *
 * The book of the process, which is there once [func@TavoAds.init] has succeeded. Main thread.
 *
 * Returns: (transfer none) (nullable): the ledger
 */
TavoAdsLedger* tavo_ads_ledger_get_default(void);

G_END_DECLS
