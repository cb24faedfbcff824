#pragma once

#include <tavo/gtk/GtkPlatform.h>

#include "tavo-ads/tavo-ads-options.h"

namespace tavo::gobject {

[[nodiscard]] gtk::GtkPlatformOptions optionsOf(TavoAdsOptions* options);

}  // namespace tavo::gobject
