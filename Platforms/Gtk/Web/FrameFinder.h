#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <string>

#include "Gtk/Web/EvaluationQueue.h"

namespace tavo::gtk {

// Finds out which frame of a page navigates; the engine's question does not say. The page is asked,
// in a world of its own, whether a frame element of its document or of a readable document inside
// names the URL and has not shown it yet.
//
// What remains: a frame of another origin that navigates itself, or a frame inside it, cannot be
// told from the main frame, and is taken for it. The main frame taken for a frame needs a page that
// at the same time loads that very URL into a frame.
class FrameFinder {
 public:
  enum class Frame { main, inner };

  explicit FrameFinder(EvaluationQueue& evaluations) : evaluations_{evaluations} {}

  // `found` is called once, later; with the main frame where the page gives no answer.
  void find(const std::string& url, std::function<void(Frame)> found);

 private:
  EvaluationQueue& evaluations_;
};

}  // namespace tavo::gtk
