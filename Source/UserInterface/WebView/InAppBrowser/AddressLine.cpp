#include "UserInterface/WebView/InAppBrowser/AddressLine.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include <tavo/ImageView.h>

#include "UserInterface/WebView/InAppBrowser/BrowserButtons.h"
#include "Values/Text.h"
#include "Values/Translation.h"

namespace tavo {

namespace {

constexpr double fontSize = 10;
constexpr double lockSide = 10;
constexpr double margin = 4;

// A lock, drawn here: not every desktop has a font with one.
Image lockPicture(const Color& ink) {
  static constexpr std::string_view rows[] = {"...######...", "..########..", ".###....###.",
                                              ".##......##.", ".##......##.", "############",
                                              "############", "#####..#####", "#####..#####",
                                              "############", "############", "############"};
  constexpr std::size_t side = std::size(rows);
  constexpr std::size_t channels = 4;
  const auto pixels = std::make_shared<std::vector<std::uint8_t>>(side * side * channels);
  for (std::size_t at = 0; at < side * side; ++at) {
    (*pixels)[at * channels + 3] = rows[at / side][at % side] == '#' ? 255 : 0;
  }
  const Image shape{static_cast<int>(side), static_cast<int>(side), side * channels,
                    Image::Pixels{pixels, pixels->data()}};
  return tinted(shape, ink);
}

}  // namespace

PageSign pageSign(const Url& page, const std::string& title) {
  const bool isSecure = equalsIgnoringCase(page.scheme(), "https");
  if (!page.isHttp() || page.host().empty()) return {title, false};
  // Translators: %1 is the name of a site that was reached without encryption.
  std::string text =
      isSecure ? std::string{page.host()} : filledIn(translated("Not secure: %1"), page.host());
  if (!title.empty()) text += " \u2013 " + title;
  return {text, isSecure};
}

AddressLine::AddressLine(const Color& ink) : label_{std::make_shared<Label>()} {
  const auto lock = std::make_shared<ImageView>();
  lock->setImage(lockPicture(ink));
  lock->setContentMode(ContentMode::aspectFit);
  lock->setAccessibilityLabel(translated("Secure connection"));
  lock->setHidden(true);
  lock_ = lock;
  label_->setTextColor(ink);
  label_->setFontSize(fontSize);
  label_->setAlignment(TextAlignment::center);
  setUserInteractionEnabled(false);
  addSubview(lock_);
  addSubview(label_);
}

void AddressLine::show(const PageSign& sign) {
  lock_->setHidden(!sign.isSecure);
  label_->setText(sign.text);
}

void AddressLine::layoutSubviews() {
  const Rect all = bounds();
  const double taken = margin + lockSide + margin;
  lock_->setFrame({margin, (all.height - lockSide) / 2, lockSide, lockSide});
  label_->setFrame({taken, 0, std::max(0.0, all.width - 2 * taken), all.height});
}

}  // namespace tavo
