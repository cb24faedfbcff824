#pragma once

#include <functional>
#include <optional>
#include <string>

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

// A control that does something when it is pressed: by touch, by pointer or from the keyboard.
class Button : public View {
 public:
  using View::View;

  [[nodiscard]] const Image& image() const { return image_; }
  void setImage(Image image);
  [[nodiscard]] const std::string& title() const { return title_; }
  void setTitle(std::string title);
  // None: as the platform writes titles.
  [[nodiscard]] const std::optional<ButtonTitleStyle>& titleStyle() const { return titleStyle_; }
  void setTitleStyle(std::optional<ButtonTitleStyle> style);
  [[nodiscard]] bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);

  // Called on release inside the button.
  void setAction(std::function<void()> action) { action_ = std::move(action); }

  // Makes the button as large as its image; without one, nothing changes.
  void sizeToFit();

  // Runs the action if the button is enabled. The button may be gone afterwards.
  void press();

 private:
  Image image_;
  std::string title_;
  std::optional<ButtonTitleStyle> titleStyle_;
  bool enabled_ = true;
  std::function<void()> action_;
};

}  // namespace tavo
