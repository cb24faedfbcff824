#pragma once

namespace tavo::test {

// Moves and presses the mouse of an X screen, as a person would, by way of the server's test
// extension. The library for it is looked for at run time.
class ScreenPointer {
 public:
  ScreenPointer();

  // False when the library is missing or the screen is not one of an X server.
  [[nodiscard]] bool works() const { return display_ != nullptr; }

  // In pixels of the screen. Only where it works.
  void moveTo(int x, int y);
  void press();
  void release();

 private:
  using Move = int (*)(void* display, int screen, int x, int y, unsigned long delay);
  using Button = int (*)(void* display, unsigned button, int down, unsigned long delay);
  using Flush = int (*)(void* display);

  void button(int down);

  void* display_ = nullptr;
  Move move_ = nullptr;
  Button button_ = nullptr;
  Flush flush_ = nullptr;
};

}  // namespace tavo::test
