#pragma once

#include <gtk/gtk.h>
#include <tavo-ads/tavo-ads-enums.h>

G_BEGIN_DECLS

/**
 * TavoAdsPlayer:
 *
 * A widget that plays the program's own films, and can be lent to a [class@TavoAds.Preroll] for an
 * ad before one.
 *
 * Only http and https are played. While the player is lent, its content and its position are the
 * ad's; before the pre-roll tells that it has finished, the film is back, stopped where it was.
 */
#define TAVO_ADS_TYPE_PLAYER (tavo_ads_player_get_type())
G_DECLARE_FINAL_TYPE(TavoAdsPlayer, tavo_ads_player, TAVO_ADS, PLAYER, GtkWidget)

/**
 * TavoAdsPlayer:video-width:
 *
 * Width of the picture in logical pixels.
 */
/**
 * TavoAdsPlayer:video-height:
 *
 * Height of the picture in logical pixels.
 */
/**
 * TavoAdsPlayer:uri:
 *
 * The film. Setting it stops what is played; nothing is fetched before it is prepared or played.
 */
/**
 * TavoAdsPlayer:autoplay:
 *
 * Whether a film that was prepared plays by itself.
 */
/**
 * TavoAdsPlayer:controls:
 *
 * Whether the player offers a bar with pause, position and full screen.
 */
/**
 * TavoAdsPlayer:position:
 *
 * The position in seconds. Setting it seeks. Changes are notified when the state changes, not with
 * each picture.
 */
/**
 * TavoAdsPlayer:duration:
 *
 * The length in seconds; 0 until it is known.
 */
/**
 * TavoAdsPlayer:state:
 *
 * What the player does.
 */
/**
 * TavoAdsPlayer:fullscreen:
 *
 * Whether the picture is above everything in its window.
 */

/**
 * TavoAdsPlayer::finished:
 * @self: the player
 * @error: (nullable): why the film could not be played to its end
 *
 * The content is over: the program's film, or an ad.
 */

/**
 * tavo_ads_player_new:
 *
 * Makes a player of 320 by 180.
 *
 * Returns: (transfer floating): a new player
 */
GtkWidget* tavo_ads_player_new(void);

/**
 * tavo_ads_player_prepare:
 * @self: a player
 *
 * Fetches the film up to its first picture; then plays, when [property@TavoAds.Player:autoplay] is
 * set.
 */
void tavo_ads_player_prepare(TavoAdsPlayer* self);

/**
 * tavo_ads_player_play:
 * @self: a player
 *
 * Plays on. After the end, plays again from the start.
 */
void tavo_ads_player_play(TavoAdsPlayer* self);

/**
 * tavo_ads_player_pause:
 * @self: a player
 *
 * Pauses; the picture stays.
 */
void tavo_ads_player_pause(TavoAdsPlayer* self);

/**
 * tavo_ads_player_stop:
 * @self: a player
 *
 * Goes back to the start.
 */
void tavo_ads_player_stop(TavoAdsPlayer* self);

G_END_DECLS
