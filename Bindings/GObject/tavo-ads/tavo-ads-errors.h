#pragma once

#include <glib.h>

G_BEGIN_DECLS

/**
 * TavoAdsError:
 * @TAVO_ADS_ERROR_NOT_INITIALIZED: [func@TavoAds.init] was not called, or has failed
 * @TAVO_ADS_ERROR_ALREADY_INITIALIZED: the library runs with other options
 * @TAVO_ADS_ERROR_NO_DISPLAY: the toolkit cannot open a display
 * @TAVO_ADS_ERROR_WRONG_THREAD: the call belongs on the thread that has called [func@TavoAds.init]
 * @TAVO_ADS_ERROR_INVALID_ARGUMENT: an option, an address or a type makes no sense; the message
 * says which
 * @TAVO_ADS_ERROR_REPLACED: another load of the same slot took the place of this one
 * @TAVO_ADS_ERROR_RELEASED: the slot was released or disposed of before there was an answer
 * @TAVO_ADS_ERROR_NO_ANSWER: the exchange ended without an answer and without an error
 * @TAVO_ADS_ERROR_NOT_LOADED: there is no ad that could be presented
 * @TAVO_ADS_ERROR_ALREADY_PRESENTED: the ad is on the screen, or another one is in that window
 * @TAVO_ADS_ERROR_NO_WINDOW: the window is not there yet: present it first
 * @TAVO_ADS_ERROR_NO_PLAYER: a pre-roll has no player to be shown in
 * @TAVO_ADS_ERROR_EXPANDED: a banner whose ad fills the screen keeps it
 * @TAVO_ADS_ERROR_NETWORK: an ad network of the program's own could not show its ad
 *
 * Failures of the use of this library. What servers and ads do wrong has domains of its own:
 * [error@TavoAds.AdError], [error@TavoAds.TransportError], [error@TavoAds.FilmError] and
 * [error@TavoAds.PageError].
 */
typedef enum {
  TAVO_ADS_ERROR_NOT_INITIALIZED = 1,
  TAVO_ADS_ERROR_ALREADY_INITIALIZED = 2,
  TAVO_ADS_ERROR_NO_DISPLAY = 3,
  TAVO_ADS_ERROR_WRONG_THREAD = 4,
  TAVO_ADS_ERROR_INVALID_ARGUMENT = 5,
  TAVO_ADS_ERROR_REPLACED = 6,
  TAVO_ADS_ERROR_RELEASED = 7,
  TAVO_ADS_ERROR_NO_ANSWER = 8,
  TAVO_ADS_ERROR_NOT_LOADED = 9,
  TAVO_ADS_ERROR_ALREADY_PRESENTED = 10,
  TAVO_ADS_ERROR_NO_WINDOW = 11,
  TAVO_ADS_ERROR_NO_PLAYER = 12,
  TAVO_ADS_ERROR_EXPANDED = 13,
  TAVO_ADS_ERROR_NETWORK = 14,
} TavoAdsError;

#define TAVO_ADS_ERROR (tavo_ads_error_quark())
GQuark tavo_ads_error_quark(void);

/**
 * TavoAdsAdError:
 * @TAVO_ADS_AD_ERROR_EMPTY_AD: the server had nothing for this slot
 * @TAVO_ADS_AD_ERROR_NO_AD: an answer without an ad, or one that cannot be shown
 * @TAVO_ADS_AD_ERROR_NO_CONNECTIVITY: offline; a banner loads by itself once the network is back
 * @TAVO_ADS_AD_ERROR_INVALID_PICTURE_URI: a creative wants to save a picture from no address
 * @TAVO_ADS_AD_ERROR_USER_CANCELLED: the person did not want the picture
 * @TAVO_ADS_AD_ERROR_UNDECODABLE_IMAGE: no picture, or one beyond the limits
 * @TAVO_ADS_AD_ERROR_RENDERING_REFUSED: the program did not want this page
 * @TAVO_ADS_AD_ERROR_MEDIATION_IMPOSSIBLE: no external network is there
 * @TAVO_ADS_AD_ERROR_VAST_TRACKING_MISSING: a video ad without tracking events
 * @TAVO_ADS_AD_ERROR_VAST_INVALID: not a VAST document, or one beyond the limits
 * @TAVO_ADS_AD_ERROR_INVALID_MOVIE_URL: no address of a film, a chain without an end, or a film of
 *   no use
 *
 * What can be wrong with an ad. A program that meets one of these usually shows its own content and
 * lets the next refresh try again.
 */
typedef enum {
  TAVO_ADS_AD_ERROR_EMPTY_AD = 1001,
  TAVO_ADS_AD_ERROR_NO_AD = 1002,
  TAVO_ADS_AD_ERROR_NO_CONNECTIVITY = 1003,
  TAVO_ADS_AD_ERROR_INVALID_PICTURE_URI = 1004,
  TAVO_ADS_AD_ERROR_USER_CANCELLED = 1005,
  TAVO_ADS_AD_ERROR_UNDECODABLE_IMAGE = 1006,
  TAVO_ADS_AD_ERROR_RENDERING_REFUSED = 1007,
  TAVO_ADS_AD_ERROR_MEDIATION_IMPOSSIBLE = 1008,
  TAVO_ADS_AD_ERROR_VAST_TRACKING_MISSING = 1010,
  TAVO_ADS_AD_ERROR_VAST_INVALID = 1011,
  TAVO_ADS_AD_ERROR_INVALID_MOVIE_URL = 1012,
} TavoAdsAdError;

#define TAVO_ADS_AD_ERROR (tavo_ads_ad_error_quark())
GQuark tavo_ads_ad_error_quark(void);

/**
 * TavoAdsTransportError:
 * @TAVO_ADS_TRANSPORT_ERROR_UNKNOWN: none of the others
 * @TAVO_ADS_TRANSPORT_ERROR_CANCELLED: by the library: the ad that asked is gone
 * @TAVO_ADS_TRANSPORT_ERROR_TIMED_OUT: idle for too long, or the whole exchange took too long
 * @TAVO_ADS_TRANSPORT_ERROR_UNSUPPORTED_URL: neither http nor https, or no address at all
 * @TAVO_ADS_TRANSPORT_ERROR_CANNOT_CONNECT: no such host, nobody listens, or no trust in its
 *   certificate
 * @TAVO_ADS_TRANSPORT_ERROR_CONNECTION_LOST: in the middle of an answer
 * @TAVO_ADS_TRANSPORT_ERROR_TOO_MANY_REDIRECTS: more than [property@TavoAds.Limits:http-redirects]
 * @TAVO_ADS_TRANSPORT_ERROR_BAD_SERVER_RESPONSE: not HTTP, or an answer that contradicts itself
 * @TAVO_ADS_TRANSPORT_ERROR_CANNOT_DECODE: a compressed body that cannot be read
 * @TAVO_ADS_TRANSPORT_ERROR_BODY_TOO_LARGE: beyond a limit
 *
 * What can go wrong between the library and the other end of an exchange.
 */
typedef enum {
  TAVO_ADS_TRANSPORT_ERROR_UNKNOWN = -1,
  TAVO_ADS_TRANSPORT_ERROR_CANCELLED = -999,
  TAVO_ADS_TRANSPORT_ERROR_TIMED_OUT = -1001,
  TAVO_ADS_TRANSPORT_ERROR_UNSUPPORTED_URL = -1002,
  TAVO_ADS_TRANSPORT_ERROR_CANNOT_CONNECT = -1004,
  TAVO_ADS_TRANSPORT_ERROR_CONNECTION_LOST = -1005,
  TAVO_ADS_TRANSPORT_ERROR_TOO_MANY_REDIRECTS = -1007,
  TAVO_ADS_TRANSPORT_ERROR_BAD_SERVER_RESPONSE = -1011,
  TAVO_ADS_TRANSPORT_ERROR_CANNOT_DECODE = -1016,
  TAVO_ADS_TRANSPORT_ERROR_BODY_TOO_LARGE = -1103,
} TavoAdsTransportError;

#define TAVO_ADS_TRANSPORT_ERROR (tavo_ads_transport_error_quark())
GQuark tavo_ads_transport_error_quark(void);

/**
 * TavoAdsFilmError:
 * @TAVO_ADS_FILM_ERROR_UNAVAILABLE: no player can run here
 * @TAVO_ADS_FILM_ERROR_NOT_PLAYABLE: no video, a missing codec, a server that has none
 * @TAVO_ADS_FILM_ERROR_TIMED_OUT: no first picture, or none any more, for too long
 * @TAVO_ADS_FILM_ERROR_INCOMPLETE: the data ended before the film did
 *
 * What ends a film before its time.
 */
typedef enum {
  TAVO_ADS_FILM_ERROR_UNAVAILABLE = 1,
  TAVO_ADS_FILM_ERROR_NOT_PLAYABLE = 2,
  TAVO_ADS_FILM_ERROR_TIMED_OUT = 3,
  TAVO_ADS_FILM_ERROR_INCOMPLETE = 4,
} TavoAdsFilmError;

#define TAVO_ADS_FILM_ERROR (tavo_ads_film_error_quark())
GQuark tavo_ads_film_error_quark(void);

/**
 * TavoAdsPageError:
 * @TAVO_ADS_PAGE_ERROR_CANNOT_SHOW_URL: an address that the web engine does not show
 * @TAVO_ADS_PAGE_ERROR_PROCESS_GONE: the page's process has ended, or was ended
 * @TAVO_ADS_PAGE_ERROR_ENGINE_UNAVAILABLE: there is no web engine here
 * @TAVO_ADS_PAGE_ERROR_NETWORK_BUDGET: the page has loaded more than it may
 * @TAVO_ADS_PAGE_ERROR_PROCESSOR_PEAK: the page has kept the processor busy for too long
 * @TAVO_ADS_PAGE_ERROR_PROCESSOR_TOTAL: the page has used up its processor time
 *
 * What can go wrong with a page. The web engine has other codes of its own, which arrive unchanged.
 */
typedef enum {
  TAVO_ADS_PAGE_ERROR_CANNOT_SHOW_URL = 101,
  TAVO_ADS_PAGE_ERROR_PROCESS_GONE = 1101,
  TAVO_ADS_PAGE_ERROR_ENGINE_UNAVAILABLE = 1102,
  TAVO_ADS_PAGE_ERROR_NETWORK_BUDGET = 1103,
  TAVO_ADS_PAGE_ERROR_PROCESSOR_PEAK = 1104,
  TAVO_ADS_PAGE_ERROR_PROCESSOR_TOTAL = 1105,
} TavoAdsPageError;

#define TAVO_ADS_PAGE_ERROR (tavo_ads_page_error_quark())
GQuark tavo_ads_page_error_quark(void);

/**
 * TavoAdsNetworkError:
 * @TAVO_ADS_NETWORK_ERROR_FAILED: none of the network's own codes
 *
 * The domain of errors that an external ad network has reported in words and codes of its own. The
 * codes are the network's, and need not be among these.
 */
typedef enum {
  TAVO_ADS_NETWORK_ERROR_FAILED = 0,
} TavoAdsNetworkError;

#define TAVO_ADS_NETWORK_ERROR (tavo_ads_network_error_quark())
GQuark tavo_ads_network_error_quark(void);

G_END_DECLS
