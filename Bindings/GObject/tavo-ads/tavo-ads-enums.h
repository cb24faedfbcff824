#pragma once

#include <glib-object.h>

G_BEGIN_DECLS

/**
 * TavoAdsKind:
 * @TAVO_ADS_KIND_UNKNOWN: nothing was answered yet, or there is nothing to show
 * @TAVO_ADS_KIND_IMAGE: a picture with a click
 * @TAVO_ADS_KIND_PAGE: an HTML page, MRAID or plain
 * @TAVO_ADS_KIND_FULL_SCREEN_PAGE: the same above everything
 * @TAVO_ADS_KIND_FULL_SCREEN_FILM: a film above everything
 * @TAVO_ADS_KIND_PREROLL: a film in the player that was lent
 * @TAVO_ADS_KIND_REDIRECTED_IMAGE: a redirect that ended in a picture
 * @TAVO_ADS_KIND_REDIRECTED_PAGE: a redirect that ended in a page
 * @TAVO_ADS_KIND_REDIRECTED_FULL_SCREEN: a redirect above everything
 *
 * What kind of ad a slot shows, as the answer of the server was classified.
 */
typedef enum {
  TAVO_ADS_KIND_UNKNOWN = 0,
  TAVO_ADS_KIND_IMAGE = 1,
  TAVO_ADS_KIND_PAGE = 2,
  TAVO_ADS_KIND_FULL_SCREEN_PAGE = 3,
  TAVO_ADS_KIND_FULL_SCREEN_FILM = 4,
  TAVO_ADS_KIND_PREROLL = 5,
  TAVO_ADS_KIND_REDIRECTED_IMAGE = 6,
  TAVO_ADS_KIND_REDIRECTED_PAGE = 7,
  TAVO_ADS_KIND_REDIRECTED_FULL_SCREEN = 8,
} TavoAdsKind;

/**
 * TavoAdsAction:
 * @TAVO_ADS_ACTION_PAGE: a film or an ad of another network was clicked, which opens what it names
 * @TAVO_ADS_ACTION_PHONE: a call
 * @TAVO_ADS_ACTION_SMS: a message in a composer, sent by the person only
 * @TAVO_ADS_ACTION_EMAIL: a mail in a composer, sent by the person only
 * @TAVO_ADS_ACTION_VIDEO_CALL: a video call
 * @TAVO_ADS_ACTION_STORE: the page of an application in a store
 * @TAVO_ADS_ACTION_CALENDAR: an event in an editor, saved by the person only
 *
 * What a click asks for: see [signal@TavoAds.Slot::clicked].
 */
typedef enum {
  TAVO_ADS_ACTION_PAGE = 0,
  TAVO_ADS_ACTION_PHONE = 1,
  TAVO_ADS_ACTION_SMS = 2,
  TAVO_ADS_ACTION_EMAIL = 3,
  TAVO_ADS_ACTION_VIDEO_CALL = 4,
  TAVO_ADS_ACTION_STORE = 5,
  TAVO_ADS_ACTION_CALENDAR = 6,
} TavoAdsAction;

/**
 * TavoAdsQuartile:
 * @TAVO_ADS_QUARTILE_FIRST: a quarter of the film
 * @TAVO_ADS_QUARTILE_MIDPOINT: a half
 * @TAVO_ADS_QUARTILE_THIRD: three quarters
 *
 * How far a film has been played.
 */
typedef enum {
  TAVO_ADS_QUARTILE_FIRST = 0,
  TAVO_ADS_QUARTILE_MIDPOINT = 1,
  TAVO_ADS_QUARTILE_THIRD = 2,
} TavoAdsQuartile;

/**
 * TavoAdsCountdownPosition:
 * @TAVO_ADS_COUNTDOWN_POSITION_TOP_RIGHT: top right
 * @TAVO_ADS_COUNTDOWN_POSITION_TOP_CENTER: top centre
 * @TAVO_ADS_COUNTDOWN_POSITION_TOP_LEFT: top left
 * @TAVO_ADS_COUNTDOWN_POSITION_BOTTOM_LEFT: bottom left
 * @TAVO_ADS_COUNTDOWN_POSITION_BOTTOM_CENTER: bottom centre
 * @TAVO_ADS_COUNTDOWN_POSITION_BOTTOM_RIGHT: bottom right
 *
 * Where the countdown and the skip text of a film stand.
 */
typedef enum {
  TAVO_ADS_COUNTDOWN_POSITION_TOP_RIGHT = 0,
  TAVO_ADS_COUNTDOWN_POSITION_TOP_CENTER = 1,
  TAVO_ADS_COUNTDOWN_POSITION_TOP_LEFT = 2,
  TAVO_ADS_COUNTDOWN_POSITION_BOTTOM_LEFT = 3,
  TAVO_ADS_COUNTDOWN_POSITION_BOTTOM_CENTER = 4,
  TAVO_ADS_COUNTDOWN_POSITION_BOTTOM_RIGHT = 5,
} TavoAdsCountdownPosition;

/**
 * TavoAdsSkipUnit:
 * @TAVO_ADS_SKIP_UNIT_SECONDS: seconds
 * @TAVO_ADS_SKIP_UNIT_PERCENT: percent of the film's length
 *
 * What [property@TavoAds.SlotSettings:skip-offset] counts.
 */
typedef enum {
  TAVO_ADS_SKIP_UNIT_SECONDS = 0,
  TAVO_ADS_SKIP_UNIT_PERCENT = 1,
} TavoAdsSkipUnit;

/**
 * TavoAdsPlayerState:
 * @TAVO_ADS_PLAYER_STATE_STOPPED: at the start, nothing prepared
 * @TAVO_ADS_PLAYER_STATE_PLAYING: playing
 * @TAVO_ADS_PLAYER_STATE_PAUSED: paused; the picture stays
 * @TAVO_ADS_PLAYER_STATE_INTERRUPTED: waits for data
 * @TAVO_ADS_PLAYER_STATE_SEEKING_FORWARD: a person moves the position on
 * @TAVO_ADS_PLAYER_STATE_SEEKING_BACKWARD: a person moves the position back
 *
 * What a [class@TavoAds.Player] does.
 */
typedef enum {
  TAVO_ADS_PLAYER_STATE_STOPPED = 0,
  TAVO_ADS_PLAYER_STATE_PLAYING = 1,
  TAVO_ADS_PLAYER_STATE_PAUSED = 2,
  TAVO_ADS_PLAYER_STATE_INTERRUPTED = 3,
  TAVO_ADS_PLAYER_STATE_SEEKING_FORWARD = 4,
  TAVO_ADS_PLAYER_STATE_SEEKING_BACKWARD = 5,
} TavoAdsPlayerState;

/**
 * TavoAdsPingState:
 * @TAVO_ADS_PING_STATE_DUE: waits for its turn
 * @TAVO_ADS_PING_STATE_SENT: is on its way
 * @TAVO_ADS_PING_STATE_ANSWERED: was answered, with whatever HTTP status
 * @TAVO_ADS_PING_STATE_FAILED: the transport gave up
 * @TAVO_ADS_PING_STATE_SUPPRESSED: the network was away: never sent
 * @TAVO_ADS_PING_STATE_DROPPED: too many were waiting: never sent
 *
 * Where a tracking ping stands. The first two are passed; each of the others is an end.
 */
typedef enum {
  TAVO_ADS_PING_STATE_DUE = 0,
  TAVO_ADS_PING_STATE_SENT = 1,
  TAVO_ADS_PING_STATE_ANSWERED = 2,
  TAVO_ADS_PING_STATE_FAILED = 3,
  TAVO_ADS_PING_STATE_SUPPRESSED = 4,
  TAVO_ADS_PING_STATE_DROPPED = 5,
} TavoAdsPingState;

/**
 * TavoAdsOrientationFit:
 * @TAVO_ADS_ORIENTATION_FIT_LETTERBOX: upright, with bars beside it
 * @TAVO_ADS_ORIENTATION_FIT_TURN: turned by a quarter
 *
 * How ads that allow one orientation only are shown in a window of the other shape.
 */
typedef enum {
  TAVO_ADS_ORIENTATION_FIT_LETTERBOX = 0,
  TAVO_ADS_ORIENTATION_FIT_TURN = 1,
} TavoAdsOrientationFit;

G_END_DECLS
