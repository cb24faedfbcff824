#include <memory>
#include <vector>

#include <tavo/Button.h>
#include <tavo/TapRecognizer.h>
#include <tavo/View.h>

namespace tavo {

void recognizeTap(View& touched) {
  // Gathered first and held: an action may take the views apart.
  const auto held = touched.shared_from_this();
  std::vector<std::shared_ptr<TapRecognizer>> takers;
  for (View* view = &touched; view != nullptr; view = view->superview()) {
    for (const auto& recognizer : view->tapRecognizers()) {
      if (!recognizer->shouldReceiveTouch || recognizer->shouldReceiveTouch(touched)) {
        takers.push_back(recognizer);
      }
    }
  }
  for (const auto& recognizer : takers) {
    recognizer->state = TapRecognizer::State::ended;
    if (recognizer->action) recognizer->action(*recognizer);
    recognizer->state = TapRecognizer::State::possible;
  }
}

View* deliverTap(View& root, Point point) {
  View* touched = root.hitTest(point);
  if (touched == nullptr) return nullptr;
  const auto held = touched->shared_from_this();
  recognizeTap(*touched);
  if (auto* button = dynamic_cast<Button*>(touched)) button->press();
  return touched;
}

}  // namespace tavo
