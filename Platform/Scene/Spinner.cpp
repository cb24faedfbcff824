#include "Scene/Spinner.h"

namespace tavo {

void Spinner::setColor(const Color& color) {
  color_ = color;
  changed();
}

void Spinner::setAnimating(bool animating) {
  if (animating == animating_) return;
  animating_ = animating;
  changed();
}

}  // namespace tavo
