#include "Player/PlayerCore.h"

#include <utility>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>

#include "Support/Errors.h"

namespace tavo::gobject {

PlayerCore::PlayerCore(GtkWidget* widget, guint finishedSignal)
    : widget_{widget},
      finishedSignal_{finishedSignal},
      client_{this, [](MoviePlayerClient*) { /* the widget owns it */ }} {
  g_weak_ref_init(&owner_, widget);
}

PlayerCore::~PlayerCore() { g_weak_ref_clear(&owner_); }

Ref<GObject> PlayerCore::owner() const {
  return Ref<GObject>::adopt(static_cast<GObject*>(g_weak_ref_get(&owner_)));
}

const std::shared_ptr<MoviePlayer>& PlayerCore::makePlayer() {
  if (player_ || retired_) return player_;
  player_ = Runtime::current().platform().moviePlayers->create({0, 0, size_.width, size_.height});
  player_->addClient(client_);
  player_->shouldAutoplay = autoplay_;
  player_->setControlStyle(controls_ ? MovieControlStyle::embedded : MovieControlStyle::none);
  player_->setContentUrl(Url::fromText(uri_));
  slot_ = std::make_unique<gtk::MovieSlot>(player_);
  gtk_widget_set_parent(child(), widget_);
  return player_;
}

GtkWidget* PlayerCore::child() const { return slot_ ? GTK_WIDGET(slot_->gobj()) : nullptr; }

void PlayerCore::retire() {
  retired_ = true;
  client_.reset();
  if (!slot_) return;
  gtk_widget_unparent(child());
  slot_.reset();
  // Whoever was lent the player may hold it for a while.
  const auto player = std::exchange(player_, nullptr);
  player->pause();
}

void PlayerCore::setUri(const std::string& uri) {
  uri_ = uri;
  if (player_) player_->setContentUrl(Url::fromText(uri));
}

void PlayerCore::setAutoplay(bool autoplay) {
  autoplay_ = autoplay;
  if (player_) player_->shouldAutoplay = autoplay;
}

void PlayerCore::setControls(bool controls) {
  controls_ = controls;
  if (player_) {
    player_->setControlStyle(controls ? MovieControlStyle::embedded : MovieControlStyle::none);
  }
}

void PlayerCore::setSize(const Size& size) {
  size_ = size;
  if (player_) {
    const Rect& frame = player_->frame();
    player_->setFrame({frame.x, frame.y, size.width, size.height});
    slot_->queue_resize();
  }
  gtk_widget_queue_resize(widget_);
}

void PlayerCore::notify(std::initializer_list<const char*> properties) {
  const auto object = owner();
  if (!object) return;
  g_object_freeze_notify(object.get());
  for (const char* name : properties) g_object_notify(object.get(), name);
  g_object_thaw_notify(object.get());
}

void PlayerCore::movieDurationAvailable(MoviePlayer& /*player*/) {
  notify({"duration", "position"});
}

void PlayerCore::moviePlaybackStateDidChange(MoviePlayer& /*player*/) {
  notify({"state", "position"});
}

void PlayerCore::moviePlaybackDidFinish(MoviePlayer& /*player*/, MovieFinishReason reason,
                                        const std::optional<Error>& error) {
  const auto object = owner();
  if (!object) return;
  const ErrorPtr why = reason == MovieFinishReason::playbackError ? errorOf(error) : ErrorPtr{};
  notify({"state", "position"});
  g_signal_emit(object.get(), finishedSignal_, 0, why.get());
}

void PlayerCore::movieDidEnterFullscreen(MoviePlayer& /*player*/) { notify({"fullscreen"}); }

void PlayerCore::movieDidExitFullscreen(MoviePlayer& /*player*/) { notify({"fullscreen"}); }

}  // namespace tavo::gobject
