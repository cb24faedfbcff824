#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/MoviePlayerFactory.h>

#include "Gtk/Video/MediaEngine.h"

namespace tavo::gtk {

// The video module's factory.
class GtkMoviePlayerFactory : public MoviePlayerFactory {
 public:
  explicit GtkMoviePlayerFactory(VideoModuleServices services)
      : engine_{std::make_shared<MediaEngine>(std::move(services))} {}

  [[nodiscard]] std::shared_ptr<MoviePlayer> create(const Rect& frame) override;
  void findPlayable(std::vector<std::string> types,
                    std::function<void(const std::vector<std::string>&)> found) override;
  void warmUp() override { engine_->start(); }

 private:
  std::shared_ptr<MediaEngine> engine_;
};

}  // namespace tavo::gtk
