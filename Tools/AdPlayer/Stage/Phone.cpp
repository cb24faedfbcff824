#include "AdPlayer/Stage/Phone.h"

#include <algorithm>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>

#include "Values/Translation.h"

namespace tavo::adplayer {

namespace {

constexpr int statusBarHeight = 24;

Gtk::Widget& grey(int width, int height) {
  auto* const line = Gtk::make_managed<Gtk::Box>();
  line->add_css_class("phone-line");
  line->set_size_request(width, height);
  line->set_halign(width < 0 ? Gtk::Align::FILL : Gtk::Align::START);
  return *line;
}

Gtk::Widget& face(const char* cssClass, const char* icon, const char* text) {
  auto* const box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 12);
  box->add_css_class(cssClass);
  box->set_valign(Gtk::Align::FILL);
  auto* const image = Gtk::make_managed<Gtk::Image>();
  image->set_from_icon_name(icon);
  image->set_pixel_size(48);
  image->set_vexpand(true);
  image->set_valign(Gtk::Align::END);
  auto* const label = Gtk::make_managed<Gtk::Label>(text);
  label->set_vexpand(true);
  label->set_valign(Gtk::Align::START);
  box->append(*image);
  box->append(*label);
  return *box;
}

}  // namespace

const std::vector<PhonePreset>& phonePresets() {
  static const std::vector<PhonePreset> presets{
      {toTranslate("Small phone"), 320, 568},  {toTranslate("Phone"), 360, 640},
      {toTranslate("Tall phone"), 390, 844},   {toTranslate("Large phone"), 430, 932},
      {toTranslate("Small tablet"), 600, 960}, {toTranslate("Tablet"), 768, 1024}};
  return presets;
}

Phone::Phone(const PhonePreset& preset) : Gtk::Box{Gtk::Orientation::VERTICAL}, preset_{preset} {
  add_css_class("phone-screen");
  statusBar_.add_css_class("phone-status");
  statusBar_.set_size_request(-1, statusBarHeight);
  auto* const clock = Gtk::make_managed<Gtk::Label>("9:41");
  auto* const signs = Gtk::make_managed<Gtk::Label>("LTE  100 %");
  clock->set_margin_start(12);
  signs->set_margin_end(12);
  statusBar_.set_start_widget(*clock);
  statusBar_.set_end_widget(*signs);
  statusBar_.set_can_target(false);
  append(statusBar_);
  fillArticle();
  faces_.add(scroller_, "article");
  faces_.add(face("phone-cover", "view-conceal-symbolic", "Another screen of the host"), "cover");
  faces_.add(face("phone-lock", "system-lock-screen-symbolic", "Locked"), "lock");
  screen_.set_child(faces_);
  screen_.set_overflow(Gtk::Overflow::HIDDEN);
  append(screen_);
  resize();
}

void Phone::fillArticle() {
  article_.add_css_class("phone-article");
  article_.set_spacing(10);
  article_.append(grey(180, 18));
  for (const int width : {-1, -1, 210}) article_.append(grey(width, 9));
  place_.set_spacing(10);
  article_.append(place_);
  for (int paragraph = 0; paragraph < 10; ++paragraph) {
    for (const int width : {-1, -1, -1, 120 + 20 * (paragraph % 5)})
      article_.append(grey(width, 9));
    article_.append(grey(1, 4));
  }
  scroller_.set_child(article_);
  scroller_.set_policy(Gtk::PolicyType::EXTERNAL, Gtk::PolicyType::EXTERNAL);
}

Size Phone::screenSize() const {
  const double width = isLandscape_ ? preset_.height : preset_.width;
  const double height = isLandscape_ ? preset_.width : preset_.height;
  return {width, height - (statusBar_.get_visible() ? statusBarHeight : 0)};
}

void Phone::resize() {
  const Size size = screenSize();
  screen_.set_size_request(static_cast<int>(size.width), static_cast<int>(size.height));
}

void Phone::setPreset(const PhonePreset& preset) {
  preset_ = preset;
  resize();
}

void Phone::setStatusBar(bool isThere) {
  statusBar_.set_visible(isThere);
  resize();
}

void Phone::setLandscape(bool isLandscape) {
  isLandscape_ = isLandscape;
  resize();
}

void Phone::clear() {
  if (slot_) place_.remove(*slot_);
  if (movie_) place_.remove(*movie_);
  if (companion_) place_.remove(*companion_);
  companion_.reset();
  slot_.reset();
  movie_.reset();
  adView_.reset();
  faces_.set_visible_child("article");
  scroller_.get_vadjustment()->set_value(0);
}

std::shared_ptr<XAdView> Phone::makeSlot(const Size& size) {
  clear();
  adView_ = XAdView::create({0, 0, size.width, size.height});
  slot_ = std::make_unique<gtk::AdSlot>(adView_);
  place_.append(*slot_);
  return adView_;
}

void Phone::lendPlayer(const Url& film) {
  const double width = std::min(screenSize().width - 32, 480.0);
  const auto player =
      Runtime::current().platform().moviePlayers->create({0, 0, width, width * 9 / 16});
  if (!film.empty()) player->setContentUrl(film);
  movie_ = std::make_unique<gtk::MovieSlot>(player);
  place_.prepend(*movie_);
  adView_->setMoviePlayerInstance(player);
}

void Phone::addCompanion(const std::shared_ptr<View>& companion) {
  if (companion_) place_.remove(*companion_);
  companion_ = std::make_unique<gtk::AdSlot>(companion);
  place_.append(*companion_);
}

void Phone::setSlotHidden(bool isHidden) { place_.set_visible(!isHidden); }

void Phone::setCovered(bool isCovered) {
  faces_.set_visible_child(isCovered ? "cover" : "article");
}

void Phone::setLocked(bool isLocked) { faces_.set_visible_child(isLocked ? "lock" : "article"); }

void Phone::setScrolledAway(bool isAway) {
  const auto adjustment = scroller_.get_vadjustment();
  adjustment->set_value(isAway ? adjustment->get_upper() : 0);
}

}  // namespace tavo::adplayer
