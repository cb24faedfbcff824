#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tavo {

struct Alert {
  std::string title;
  std::string message;
  std::vector<std::string> buttons;  // at least one
  std::size_t cancelButton = 0;      // the one that changes nothing
  friend bool operator==(const Alert&, const Alert&) = default;
};

// Small dialogs above the host's window. Main thread only.
class Alerts {
 public:
  virtual ~Alerts() = default;

  // Shows the alert and calls `answered` once, never inside this call, with the number of the
  // button that was chosen. A dialog that is closed in another way, or cannot be shown because the
  // host has no window, counts as answered with the cancel button. Nothing waits meanwhile.
  virtual void show(const Alert& alert, std::function<void(std::size_t button)> answered) = 0;
};

}  // namespace tavo
