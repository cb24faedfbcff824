#pragma once

#include <gtkmm.h>

namespace tavo::adplayer {

// How the player's own widgets and its phone look, on the default display.
void installStyle();

}  // namespace tavo::adplayer
