#include "SamplePage.h"

#include <tavo/Button.h>
#include <tavo/ImageView.h>
#include <tavo/Label.h>

#include "SampleArt.h"

namespace sample {

namespace {
// The page is drawn up at this size; its parts then follow the window.
constexpr tavo::Rect draft{0, 0, 320, 480};
constexpr tavo::Color night{0.10F, 0.14F, 0.49F, 1};
}  // namespace

std::shared_ptr<tavo::View> SamplePage::loadView() {
  auto page = std::make_shared<tavo::View>(draft);
  page->setBackgroundColor(night);

  const auto picture = std::make_shared<tavo::ImageView>(tavo::Rect{40, 80, 240, 240});
  picture->setImage(sunset(240));
  picture->setContentMode(tavo::ContentMode::aspectFit);
  picture->setAutoresizingMask(tavo::flexibleWidth | tavo::flexibleHeight);
  page->addSubview(picture);

  const auto label = std::make_shared<tavo::Label>(tavo::Rect{20, 340, 280, 40});
  label->setText(text_);
  label->setTextColor(tavo::colors::white);
  label->setFontSize(20);
  label->setAlignment(tavo::TextAlignment::center);
  label->setAutoresizingMask(tavo::flexibleWidth | tavo::flexibleTopMargin);
  page->addSubview(label);

  const auto button = std::make_shared<tavo::Button>(tavo::Rect{220, 16, 84, 36});
  button->setTitle("Close");
  button->setAccessibilityLabel("Close the ad");
  button->setTitleStyle(tavo::ButtonTitleStyle{.color = tavo::colors::white, .fontSize = 18});
  button->setBackgroundColor(tavo::Color{1, 1, 1, 0.25F});
  button->setAutoresizingMask(tavo::flexibleLeftMargin | tavo::flexibleBottomMargin);
  button->setAction([this] { close(); });
  page->addSubview(button);
  return page;
}

bool SamplePage::cancelOperation() {
  close();
  return true;
}

void SamplePage::close() {
  if (presentingViewController() == nullptr) return;
  const auto held = shared_from_this();
  willClose_();
  dismissViewController(tavo::Animated::yes, didClose_);
}

}  // namespace sample
