#pragma once

#include <memory>

#include <tavo/MoviePlayer.h>

#include "tavo-ads/tavo-ads-player.h"

namespace tavo::gobject {

// The player behind the widget, made on the first call; the library must be usable.
[[nodiscard]] const std::shared_ptr<MoviePlayer>& playerOf(TavoAdsPlayer* player);

}  // namespace tavo::gobject
