#include "SampleBanner.h"

#include <algorithm>

#include <tavo/ImageView.h>
#include <tavo/Label.h>

#include "SampleArt.h"
#include "SamplePage.h"

namespace sample {

using tavo::CVAdDelegate;

SampleBanner::SampleBanner() {
  const auto tap = std::make_shared<tavo::TapRecognizer>();
  tap->action = [this, alive = life()](tavo::TapRecognizer&) {
    if (!alive.expired()) clicked();
  };
  view_->addTapRecognizer(tap);
  view_->setAccessibilityLabel("An ad of the sample network");  // the keyboard reaches it by that
}

// The ad as large as was asked for, in the middle of the view.
void SampleBanner::arrived() {
  const double width = std::min(adSize_.width, view_->frame().width);
  const double height = std::min(adSize_.height, view_->frame().height);
  const auto ad = std::make_shared<tavo::View>(tavo::Rect{
      (view_->frame().width - width) / 2, (view_->frame().height - height) / 2, width, height});
  ad->setBackgroundColor(tavo::Color{0.10F, 0.14F, 0.49F, 1});
  const auto picture = std::make_shared<tavo::ImageView>(tavo::Rect{0, 0, height, height});
  picture->setImage(sunset(100));
  ad->addSubview(picture);
  const auto label =
      std::make_shared<tavo::Label>(tavo::Rect{height + 12, 0, width - height - 24, height});
  label->setText("An ad of the sample network");
  label->setTextColor(tavo::colors::white);
  label->setFontSize(15);
  ad->addSubview(label);
  view_->addSubview(ad);
  tell(&CVAdDelegate::adDidReceiveAd);
}

void SampleBanner::clicked() {
  if (view_->subviews().empty()) return;
  const auto alive = life();
  tell(&CVAdDelegate::adWasClicked);
  if (alive.expired()) return;
  if (!opensInNativeBrowser_) return openPage();
  tell(&CVAdDelegate::adWillLeaveApplication);
  openSite();
}

void SampleBanner::openPage() {
  const auto root = root_.lock();
  if (!root) return;
  const auto report = [this, alive = life()](Event event) {
    return [this, alive, event] {
      if (!alive.expired()) tell(event);
    };
  };
  report (&CVAdDelegate::adWillPresent)();
  root->presentViewController(
      std::make_shared<SamplePage>("The sample network's page", report(&CVAdDelegate::adWillClose),
                                   report(&CVAdDelegate::adDidClose)),
      tavo::Animated::yes, report(&CVAdDelegate::adDidPresent));
}

}  // namespace sample
