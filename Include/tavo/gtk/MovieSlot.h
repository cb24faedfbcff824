#pragma once

#include <memory>

#include <tavo/MoviePlayer.h>
#include <tavo/gtk/AdSlot.h>

namespace tavo::gtk {

// A widget that shows a movie player of the host's in a gtkmm layout:
//
//   auto player = runtime.platform().moviePlayers->create({0, 0, 640, 360});
//   player->setContentUrl(film);
//   slot = std::make_unique<tavo::gtk::MovieSlot>(player);
//   column.append(*slot);
//   adView->setMoviePlayerInstance(player);  // the pre-roll plays here, then the film is back
//
// The host and the slot share the player; the player's frame gives the slot its size, as in AdSlot.
// Main thread only.
class MovieSlot : public AdSlot {
 public:
  // `player` must not be null.
  explicit MovieSlot(const std::shared_ptr<MoviePlayer>& player)
      : AdSlot{player}, player_{player} {}

  // Never null.
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& player() const { return player_; }

 private:
  std::shared_ptr<MoviePlayer> player_;
};

}  // namespace tavo::gtk
