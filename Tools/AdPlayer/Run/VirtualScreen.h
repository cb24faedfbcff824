#pragma once

#include <sys/types.h>

#include <string>

namespace tavo::adplayer {

// A screen of its own that nobody sees, so that nothing else moves the pointer. Needs Xvfb.
class VirtualScreen {
 public:
  // Throws std::runtime_error, with what to do, when it cannot be started.
  VirtualScreen();
  ~VirtualScreen();
  VirtualScreen(const VirtualScreen&) = delete;
  VirtualScreen& operator=(const VirtualScreen&) = delete;

  // Makes this process, and those that it starts, use a virtual screen: `display` of one.
  static void use(const std::string& display);

  // What the environment variable DISPLAY has to say.
  [[nodiscard]] const std::string& display() const { return display_; }

 private:
  pid_t process_ = 0;
  std::string display_;
};

}  // namespace tavo::adplayer
