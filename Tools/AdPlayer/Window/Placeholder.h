#pragma once

#include <gtkmm.h>

#include "Values/Translation.h"

namespace tavo::adplayer {

// gtkmm 4.8 takes a search field for an entry, which it no longer is, and sets nothing.
inline void setPlaceholder(Gtk::SearchEntry& field, const char* text) {
  g_object_set(field.gobj(), "placeholder-text", translated(text).c_str(), nullptr);
}

}  // namespace tavo::adplayer
