#include "UserInterface/WebView/InAppBrowser/BrowserToolbar.h"

#include <string>
#include <utility>

#include "UserInterface/Pictures/Pictures.h"

namespace tavo {

namespace {

constexpr float disabledAlpha = 0.35F;

void enable(const std::shared_ptr<Button>& button, bool enabled) {
  if (!button) return;
  button->setEnabled(enabled);
  button->setAlpha(enabled ? 1 : disabledAlpha);
}

}  // namespace

BrowserToolbar::BrowserToolbar(std::shared_ptr<Environment> environment,
                               std::shared_ptr<const XBrowserConfiguration> settings,
                               Pressed pressed)
    : environment_{std::move(environment)},
      settings_{std::move(settings)},
      pressed_{std::move(pressed)} {
  setAutoresizingMask(flexibleWidth | flexibleTopMargin);
  setBarStyle(settings_->barStyle);
  if (settings_->toolbarBGColor) setBackgroundColor(settings_->toolbarBGColor);
  if (settings_->toolbarBGImageName) {
    setBackgroundPattern(namedPicture(*settings_->toolbarBGImageName, environment_->platform()));
  }
  address_ = std::make_shared<AddressLine>(ink());
  addSubview(address_);
}

Color BrowserToolbar::ink() const { return isDark() ? colors::white : colors::darkGray; }

void BrowserToolbar::layoutSubviews() {
  Toolbar::layoutSubviews();
  const Rect all = bounds();
  address_->setFrame({0, all.height - AddressLine::height, all.width, AddressLine::height});
  bringSubviewToFront(*address_);
}

void BrowserToolbar::place(Size all) {
  setFrame({0, isOnTop() ? 0 : all.height - standardHeight, all.width, standardHeight});
}

std::vector<std::shared_ptr<Button>> BrowserToolbar::makeItems() {
  std::vector<std::shared_ptr<Button>> items;
  for (const auto number : browserButtons) {
    if (!isButtonShown(*settings_, number)) continue;
    items.push_back(makeButton(number));
    if (number == BrowserButton::back) backButton_ = items.back();
    if (number == BrowserButton::forward) forwardButton_ = items.back();
  }
  setHistory(false, false);
  return items;
}

std::shared_ptr<Button> BrowserToolbar::makeButton(BrowserButton number) {
  const auto& platform = environment_->platform();
  auto button = std::make_shared<Button>();
  const auto images = hostImages(*settings_, number);
  Image image = images.empty() ? Image{} : namedPicture(images.front()[1], platform);
  if (image.empty()) {
    image = tinted(namedPicture(builtInImageName(number), platform), ink());
  }
  button->setImage(std::move(image));
  button->setAccessibilityLabel(buttonLabel(number));
  button->setAction([pressed = pressed_, number] { pressed(number); });
  return button;
}

void BrowserToolbar::setHistory(bool behind, bool ahead) const {
  enable(backButton_, behind);
  enable(forwardButton_, ahead);
}

}  // namespace tavo
