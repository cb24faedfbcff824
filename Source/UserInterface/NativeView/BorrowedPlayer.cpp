#include "UserInterface/NativeView/BorrowedPlayer.h"

#include <utility>

namespace tavo {

bool BorrowedPlayer::isBusy() const {
  return host_ && host_->shouldAutoplay && host_->playbackState() == MoviePlaybackState::playing;
}

void BorrowedPlayer::borrow() {
  if (!host_ || content_) return;
  content_ = Content{host_->contentUrl(), host_->currentPlaybackTime(), host_->shouldAutoplay};
  host_->shouldAutoplay = true;
}

void BorrowedPlayer::giveBack() {
  const auto content = std::exchange(content_, std::nullopt);
  if (!content) return;
  host_->shouldAutoplay = content->autoplay;
  host_->setContentUrl({});
  host_->setContentUrl(content->url);
  host_->setCurrentPlaybackTime(content->position);
  host_->setControlStyle(MovieControlStyle::embedded);
}

}  // namespace tavo
