#pragma once

#include <memory>

#include <tavo/MoviePlayer.h>
#include <tavo/gtk/AdSlot.h>

namespace tavo::gtk {

// A widget that shows a movie player of the host's in a gtkmm layout:
//
//   auto player = tavo::Runtime::current().platform().moviePlayers->create({0, 0, 640, 360});
//   player->setContentUrl(film);
//   column.append(slot = tavo::gtk::MovieSlot{player});
//   adView->setMoviePlayerInstance(player);  // the pre-roll plays here, then the film is back
//
// The host and the slot share the player.
class MovieSlot : public AdSlot {
 public:
  explicit MovieSlot(const std::shared_ptr<MoviePlayer>& player)
      : AdSlot{player}, player_{player} {}

  [[nodiscard]] const std::shared_ptr<MoviePlayer>& player() const { return player_; }

 private:
  std::shared_ptr<MoviePlayer> player_;
};

}  // namespace tavo::gtk
