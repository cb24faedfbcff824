#include "UserInterface/StandardsVideo/IconLayer.h"

#include <algorithm>
#include <utility>

namespace tavo {

namespace {

constexpr Color dimmed{0, 0, 0, 0.6F};

// From the right the mask keeps the distance to the right, and so on.
unsigned maskOf(const VastIcon& icon) {
  return (icon.x == "right" ? flexibleLeftMargin : flexibleRightMargin) |
         (icon.y == "bottom" ? flexibleTopMargin : flexibleBottomMargin);
}

// Centred, as large as it wants to be and the film allows.
Rect fallbackPlace(const VastFallbackImage& image, Size film) {
  const double width = std::min<double>(image.width > 0 ? image.width : film.width, film.width);
  const double height =
      std::min<double>(image.height > 0 ? image.height : film.height, film.height);
  return {(film.width - width) / 2, (film.height - height) / 2, width, height};
}

}  // namespace

IconLayer::IconLayer(std::shared_ptr<Environment> environment, std::vector<VastIcon> icons,
                     std::shared_ptr<VastPings> pings, Events events)
    : environment_{std::move(environment)}, pings_{std::move(pings)}, events_{std::move(events)} {
  icons.resize(std::min(icons.size(), environment_->limits().vastIcons));
  for (auto& icon : icons) {
    icons_.push_back({std::move(icon), "icon " + std::to_string(icons_.size())});
  }
}

void IconLayer::showAt(View& film, double time) {
  film_ = film.weak_from_this();
  for (auto& one : icons_) {
    const bool due = isIconDue(one.icon, time) && !one.failed;
    if (due && !one.view) put(one, film);
    if (!due && one.view) std::exchange(one.view, nullptr)->removeFromSuperview();
  }
}

// The view is this layer's, but may outlive it inside a report.
void IconLayer::put(Shown& one, View& film) {
  const Rect place = iconPlace(one.icon, film.frame().size());
  one.failed = !(place.width > 0) || one.icon.resources.empty();
  if (one.failed) return;
  const auto index = static_cast<std::size_t>(&one - icons_.data());
  const auto told = [weak = weak_from_this(), index](auto&& tell) {
    return [weak, index, tell] {
      if (const auto self = weak.lock()) tell(*self, self->icons_[index]);
    };
  };
  one.view = VastResourceView::create(
      environment_, place, one.icon.resources,
      one.icon.altText.empty() ? one.icon.program : one.icon.altText,
      VastResourceView::Pages::areCovered,
      {.shown = told([](IconLayer& self, Shown& icon) {
         self.pings_->once(icon.name + " view", icon.icon.viewTracking);
       }),
       .failed = told([](IconLayer&, Shown& icon) {
         icon.failed = true;
         if (icon.view) std::exchange(icon.view, nullptr)->removeFromSuperview();
       }),
       .clicked = told([index](IconLayer& self, Shown&) { self.clicked(index); }),
       .opened = [](const Url&) {}});
  one.view->setAutoresizingMask(maskOf(one.icon));
  const auto view = one.view;  // held: it may fail at once
  film.addSubview(view);
}

void IconLayer::clicked(std::size_t index) {
  const auto held = shared_from_this();
  const VastIcon& icon = icons_[index].icon;
  pings_->each(icons_[index].name + " click", icon.click.tracking);
  const Url page = pings_->filled(icon.click.through);
  if (!page.empty() && events_.canOpen(page)) return events_.open(page);
  if (!icon.fallbackImages.empty()) showFallback(icon);
}

// The picture says what the page would have said; a touch takes it away.
void IconLayer::showFallback(const VastIcon& icon) {
  const auto film = film_.lock();
  if (!film || fallback_) return;
  const VastFallbackImage& image = icon.fallbackImages.front();
  const auto close = [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self && self->fallback_) std::exchange(self->fallback_, nullptr)->removeFromSuperview();
  };
  fallback_ = VastResourceView::create(
      environment_, fallbackPlace(image, film->frame().size()),
      {{VastResource::Kind::picture, image.url, {}}}, image.altText,
      VastResourceView::Pages::areCovered,
      {.shown = [] {}, .failed = close, .clicked = close, .opened = [](const Url&) {}});
  fallback_->setBackgroundColor(dimmed);
  const auto view = fallback_;
  film->addSubview(view);
}

void IconLayer::remove() {
  for (auto& one : icons_) {
    if (one.view) std::exchange(one.view, nullptr)->removeFromSuperview();
  }
  if (fallback_) std::exchange(fallback_, nullptr)->removeFromSuperview();
}

}  // namespace tavo
