#pragma once

#include <memory>
#include <string>

#include "UserInterface/NativeView/XVASTVideoView.h"

namespace tavo {

// What takes an answer from VAST text to a playing film. Dropping it ends it and the film. Main
// thread only.
class FilmRoad {
 public:
  virtual ~FilmRoad() = default;

  virtual void loadVastAd(const std::string& text) = 0;

  // Null until there is a film to play.
  [[nodiscard]] virtual std::shared_ptr<XVASTVideoView> videoView() const = 0;
};

}  // namespace tavo
