#pragma once

#include <gio/gio.h>
#include <tavo-ads/tavo-ads-enums.h>
#include <tavo-ads/tavo-ads-slot-settings.h>

G_BEGIN_DECLS

/**
 * TavoAdsSlot:
 *
 * A place for an ad: a [class@TavoAds.Banner], a [class@TavoAds.Interstitial] or a
 * [class@TavoAds.Preroll].
 *
 * Say where the ad comes from ([property@TavoAds.Slot:domain], [property@TavoAds.Slot:page],
 * [property@TavoAds.Slot:position]), then load. Each outcome is told by a signal. A signal's
 * handler may do anything, also dispose of the slot.
 *
 * Main thread only, which is the one that has called [func@TavoAds.init]. A call from another one
 * is refused with a critical message or an error. Only classes of this library implement the
 * interface.
 */
/**
 * TavoAdsSlotInterface:
 *
 * The virtual functions of a slot, which are the library's own.
 */
#define TAVO_ADS_TYPE_SLOT (tavo_ads_slot_get_type())
G_DECLARE_INTERFACE(TavoAdsSlot, tavo_ads_slot, TAVO_ADS, SLOT, GObject)

/**
 * TavoAdsSlot:domain:
 *
 * Host and delivery path of the ad server, without scheme: "ads.example.com/delivery".
 */
/**
 * TavoAdsSlot:page:
 *
 * The page that the ad is for: "news/front".
 */
/**
 * TavoAdsSlot:position:
 *
 * The position on the page: "Top".
 */
/**
 * TavoAdsSlot:keywords:
 *
 * "key=value" pairs joined by "&".
 */
/**
 * TavoAdsSlot:query:
 *
 * More "key=value" pairs joined by "&", for the query of the request.
 */
/**
 * TavoAdsSlot:settings:
 *
 * The slot's settings, which slots may share. Never `NULL` when read; setting `NULL` brings the
 * defaults back. Others count from the next load on.
 */
/**
 * TavoAdsSlot:loaded:
 *
 * Whether an ad is there.
 */
/**
 * TavoAdsSlot:loading:
 *
 * Whether the answer to a load is being waited for.
 */
/**
 * TavoAdsSlot:kind:
 *
 * What the current ad is.
 */

/**
 * TavoAdsSlot::loaded:
 * @self: the slot
 *
 * An ad is there: a page or a picture has loaded, a film is ready, or an ad of another network has
 * arrived. A banner tells it after each refresh.
 */
/**
 * TavoAdsSlot::failed:
 * @self: the slot
 * @error: why
 *
 * There is no ad to show, or the one that was shown is lost.
 */
/**
 * TavoAdsSlot::clicked:
 * @self: the slot
 * @action: what the click asks for
 * @details: (nullable): what is known about it, of the type `a{sv}`
 *
 * The ad was clicked. For everything but [enum@TavoAds.Action.page] it is a question: `TRUE` means
 * that the program takes the action over, at once or later with [method@TavoAds.Slot.perform], and
 * `FALSE` lets the library carry it out. The answer to [enum@TavoAds.Action.page] is not used.
 *
 * Keys of @details, each there when the ad has said it: `url`; for mails `recipient`, `subject` and
 * `body`; for events `start`, `end` (seconds since 1970, of the type `x`), `description`,
 * `summary`, `location` and `reminder`. All others are strings.
 *
 * Clicks on pages and pictures show as [signal@TavoAds.Slot::browser-opened] or
 * [signal@TavoAds.Slot::leaves-application].
 *
 * Returns: `TRUE` to take the action over
 */
/**
 * TavoAdsSlot::custom-url:
 * @self: the slot
 * @url: the address
 *
 * The ad opened an address of the scheme "app", which belongs to the program. The library does
 * nothing more with it.
 */
/**
 * TavoAdsSlot::review-page:
 * @self: the slot
 *
 * A page has loaded and is about to be shown.
 *
 * Returns: `TRUE` to refuse it, which ends the load with [error@TavoAds.AdError.RENDERING_REFUSED];
 *   `FALSE` to show it and count its impression
 */
/**
 * TavoAdsSlot::leaves-application:
 * @self: the slot
 *
 * A click leaves the application: it was handed to the system.
 */
/**
 * TavoAdsSlot::browser-opened:
 * @self: the slot
 *
 * The browser inside the application is about to be shown.
 */
/**
 * TavoAdsSlot::browser-closed:
 * @self: the slot
 *
 * The browser inside the application closes.
 */
/**
 * TavoAdsSlot::quartile:
 * @self: the slot
 * @quartile: how far the film is
 *
 * A film has reached a quartile.
 */
/**
 * TavoAdsSlot::video-paused:
 * @self: the slot
 *
 * A film was paused by the user or the system.
 */
/**
 * TavoAdsSlot::video-resumed:
 * @self: the slot
 *
 * A film goes on.
 */
/**
 * TavoAdsSlot::video-skipped:
 * @self: the slot
 *
 * A film was skipped.
 */
/**
 * TavoAdsSlot::video-rewound:
 * @self: the slot
 *
 * A film is played again.
 */
/**
 * TavoAdsSlot::full-screen-entered:
 * @self: the slot
 *
 * A film was lifted to the whole screen.
 */
/**
 * TavoAdsSlot::full-screen-left:
 * @self: the slot
 *
 * A film is back at its place.
 */
/**
 * TavoAdsSlot::memory-low:
 * @self: the slot
 *
 * The slot let go of its ad because the device ran low on memory.
 */

/**
 * tavo_ads_slot_set_address:
 * @self: a slot
 * @domain: host and delivery path of the ad server, without scheme
 * @page: the page that the ad is for
 * @position: the position on the page
 *
 * Sets three properties at once.
 */
void tavo_ads_slot_set_address(TavoAdsSlot* self, const char* domain, const char* page,
                               const char* position);

/**
 * tavo_ads_slot_load:
 * @self: a slot
 *
 * Asks the server for an ad. Signals tell what came of it, that of a device without a network
 * inside this call. An earlier load is not waited for any more.
 *
 * What is missing for a load (no [func@TavoAds.init], no address, no player) is told by a critical
 * message.
 */
void tavo_ads_slot_load(TavoAdsSlot* self);

/**
 * tavo_ads_slot_load_async:
 * @self: a slot
 * @cancellable: (nullable): ends the load and takes away what it has brought
 * @callback: (scope async) (nullable): called with the outcome
 * @user_data: data for @callback
 *
 * Asks the server for an ad and calls back with the first outcome. The signals are told, too.
 */
void tavo_ads_slot_load_async(TavoAdsSlot* self, GCancellable* cancellable,
                              GAsyncReadyCallback callback, gpointer user_data);

/**
 * tavo_ads_slot_load_finish:
 * @self: a slot
 * @result: what the callback was given
 * @error: return location for an error
 *
 * Tells what came of [method@TavoAds.Slot.load_async].
 *
 * Returns: whether an ad is there
 */
gboolean tavo_ads_slot_load_finish(TavoAdsSlot* self, GAsyncResult* result, GError** error);

/**
 * tavo_ads_slot_release:
 * @self: a slot
 *
 * Takes the ad away, closes what it had opened, and ends the timer and all requests. A later load
 * brings a new one. May be called any number of times.
 */
void tavo_ads_slot_release(TavoAdsSlot* self);

/**
 * tavo_ads_slot_perform:
 * @self: a slot
 * @action: what a click has asked for
 * @details: (nullable): what [signal@TavoAds.Slot::clicked] has told about it
 *
 * Carries an action out, without the question. What the system cannot do is left undone.
 */
void tavo_ads_slot_perform(TavoAdsSlot* self, TavoAdsAction action, GVariant* details);

/**
 * tavo_ads_slot_get_loaded:
 * @self: a slot
 *
 * Tells whether an ad is there.
 *
 * Returns: `TRUE` from the time that it has loaded until it is gone
 */
gboolean tavo_ads_slot_get_loaded(TavoAdsSlot* self);

G_END_DECLS
