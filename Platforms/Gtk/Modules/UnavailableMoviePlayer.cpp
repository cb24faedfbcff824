#include "Gtk/Modules/UnavailableMoviePlayer.h"

namespace tavo::gtk {

void UnavailableMoviePlayer::prepareToPlay() {
  later([weak = weak_from_this(), url = contentUrl_] {
    const auto self = std::static_pointer_cast<UnavailableMoviePlayer>(weak.lock());
    if (!self || !(self->contentUrl_ == url)) return;
    self->tellFinish(MovieFinishReason::playbackError,
                     makeError(MovieError::unavailable, "No video can be played here."));
  });
}

}  // namespace tavo::gtk
