#pragma once

#include <memory>
#include <optional>

#include <tavo/MoviePlayer.h>
#include <tavo/Url.h>

namespace tavo {

// The host's movie player while an ad is in it: keeps what the host had there, and puts it back.
// Without a host's player it does nothing. Main thread only.
class BorrowedPlayer {
 public:
  explicit BorrowedPlayer(std::shared_ptr<MoviePlayer> host) : host_{std::move(host)} {}

  // The host's player, or null.
  [[nodiscard]] const std::shared_ptr<MoviePlayer>& host() const { return host_; }
  // True while the host shows something of its own accord: no ad may come between.
  [[nodiscard]] bool isBusy() const;

  // Takes the player over for an ad, which may start by itself; the host's content is kept, also
  // when an ad begins again.
  void borrow();
  // Puts the host's content back where it was; what was not borrowed stays as it is.
  void giveBack();

 private:
  struct Content {
    Url url;
    double position = 0;  // seconds
    bool autoplay = true;
  };

  std::shared_ptr<MoviePlayer> host_;
  std::optional<Content> content_;  // while the player is borrowed
};

}  // namespace tavo
