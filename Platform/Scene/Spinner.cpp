#include "Scene/Spinner.h"

namespace tavo {

void Spinner::setColor(const Color& color) { change(color_, color); }

void Spinner::setAnimating(bool animating) { change(animating_, animating); }

}  // namespace tavo
