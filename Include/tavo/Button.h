#pragma once

#include <functional>
#include <optional>
#include <string>

#include <tavo/Export.h>
#include <tavo/Label.h>
#include <tavo/View.h>

namespace tavo {

// How a button writes its title.
struct ButtonTitleStyle {
  Color color = colors::black;
  double fontSize = 14;  // points
  TextAlignment alignment = TextAlignment::center;
  friend bool operator==(const ButtonTitleStyle&, const ButtonTitleStyle&) = default;
};

// A control that does something when it is pressed: by touch, by pointer or, with the focus on it,
// from the keyboard. It shows its image; without one its title; with neither it is invisible and
// can be pressed all the same. What assistive technology calls it, and what is shown while the
// pointer rests on it, is its accessibility label. Main thread only; changes show with the next
// frame.
class TAVO_EXPORT Button : public View {
 public:
  using View::View;

  // Made to fit the button, its proportions kept. Empty: none.
  [[nodiscard]] const Image& image() const { return image_; }
  void setImage(Image image);
  // Points kept free around it. Off at first.
  [[nodiscard]] double imageMargin() const { return imageMargin_; }
  void setImageMargin(double margin);
  // One line of plain text, drawn where there is no image.
  [[nodiscard]] const std::string& title() const { return title_; }
  void setTitle(std::string title);
  // None: as the platform writes titles.
  [[nodiscard]] const std::optional<ButtonTitleStyle>& titleStyle() const { return titleStyle_; }
  void setTitleStyle(std::optional<ButtonTitleStyle> style);
  // A button that is not enabled is drawn pale and takes no press.
  [[nodiscard]] bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);

  // Called on release inside the button, on the main thread. Replaces the former action; the button
  // owns it, so an action that holds its own button keeps it for ever: hold it weakly.
  void setAction(std::function<void()> action) { action_ = std::move(action); }

  // Makes the button as large as its image; without one, nothing changes.
  void sizeToFit();

  // Runs the action if the button is enabled. The button may be gone afterwards.
  void press();

 private:
  Image image_;
  double imageMargin_ = 0;
  std::string title_;
  std::optional<ButtonTitleStyle> titleStyle_;
  bool enabled_ = true;
  std::function<void()> action_;
};

}  // namespace tavo
