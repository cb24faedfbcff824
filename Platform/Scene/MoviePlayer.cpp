#include <algorithm>
#include <utility>

#include <tavo/MoviePlayer.h>

#include "Scene/Window.h"

namespace tavo {

Error makeError(MovieError code, std::string_view description) {
  return {std::string{movieErrorDomain}, static_cast<int>(code), std::string{description}};
}

void MoviePlayer::addClient(std::weak_ptr<MoviePlayerClient> client) {
  clients_.push_back(std::move(client));
}

void MoviePlayer::removeClient(const MoviePlayerClient& client) {
  std::erase_if(clients_, [&](const auto& known) {
    const auto held = known.lock();
    return !held || held.get() == &client;
  });
}

// A client may do anything when it is told, also let go of the player or of other clients.
template <typename Tell>
void MoviePlayer::tellClients(const Tell& tell) {
  const auto held = shared_from_this();
  const auto clients = clients_;
  for (const auto& client : clients) {
    if (const auto alive = client.lock()) tell(*alive);
  }
}

void MoviePlayer::tellDurationAvailable() {
  tellClients([this](MoviePlayerClient& client) { client.movieDurationAvailable(*this); });
}

void MoviePlayer::tellPlaybackState() {
  tellClients([this](MoviePlayerClient& client) { client.moviePlaybackStateDidChange(*this); });
}

void MoviePlayer::tellFinish(MovieFinishReason reason, const std::optional<Error>& error) {
  tellClients(
      [&](MoviePlayerClient& client) { client.moviePlaybackDidFinish(*this, reason, error); });
}

void MoviePlayer::setControlStyle(MovieControlStyle style) {
  if (controlStyle_ == style) return;
  controlStyle_ = style;
  controlStyleChanged();
}

void MoviePlayer::setMuted(bool muted) {
  if (muted_ == muted) return;
  muted_ = muted;
  soundSwitched();
  later([weak = weak_from_this()] {
    const auto self = std::static_pointer_cast<MoviePlayer>(weak.lock());
    if (!self) return;
    self->tellClients([&](MoviePlayerClient& client) { client.movieDidSwitchSound(*self); });
  });
}

void MoviePlayer::setFullscreen(bool fullscreen) {
  if (fullscreen == isFullscreen()) return;
  View* top = window();
  if (fullscreen && top == nullptr) return;
  const auto held = shared_from_this();
  if (fullscreen) {
    enterFullscreen(*top);
  } else {
    exitFullscreen();
  }
  fullscreenChanged();
  later([weak = weak_from_this(), fullscreen] {
    const auto self = std::static_pointer_cast<MoviePlayer>(weak.lock());
    if (!self) return;
    self->tellClients([&](MoviePlayerClient& client) {
      if (fullscreen) {
        client.movieDidEnterFullscreen(*self);
      } else {
        client.movieDidExitFullscreen(*self);
      }
    });
  });
}

void MoviePlayer::enterFullscreen(View& window) {
  place_ = Place{superview()->weak_from_this(), frame(), autoresizingMask()};
  window.addSubview(shared_from_this());
  setAutoresizingMask(flexibleWidth | flexibleHeight);
  setFrame(window.bounds());
}

void MoviePlayer::exitFullscreen() {
  const Place place = *std::exchange(place_, std::nullopt);
  setAutoresizingMask(place.autoresizingMask);
  setFrame(place.frame);
  if (const auto superview = place.superview.lock()) {
    superview->addSubview(shared_from_this());
  } else {
    removeFromSuperview();
  }
}

bool playedThrough(const PlayedContent& content) {
  constexpr double longestRest = 1;     // seconds
  constexpr double largestPart = 0.25;  // of a short video
  if (!content.hadVideo || !(content.duration > 0)) return false;
  const double rest = content.duration - content.lastPosition;
  return rest <= std::min(longestRest, content.duration * largestPart);
}

}  // namespace tavo
