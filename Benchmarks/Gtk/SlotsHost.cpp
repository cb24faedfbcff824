#include "SlotsHost.h"

#include <fstream>
#include <iterator>

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>

#include "Elapsed.h"
#include "Support/HostLoop.h"

namespace tavo::benchmark {

namespace {

constexpr int columns = 3;
constexpr std::size_t viewsOfProcess = 10;
constexpr std::chrono::seconds patience{60};

}  // namespace

void turnQuietlyFor(double seconds) {
  bool over = false;
  g_timeout_add(
      static_cast<guint>(seconds * 1000),
      [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
      },
      &over);
  while (!over) g_main_context_iteration(nullptr, TRUE);
}

SlotsHost::SlotsHost(Place place) : host_{TAVO_SLOTS_CAMPAIGNS} {
  content_.append(grid_);
  if (place == Place::scroller) {
    end_.set_margin_top(4'000);
    content_.append(end_);
    scroller_.set_child(content_);
    scroller_.set_vexpand(true);
    host_.column().append(scroller_);
  } else {
    host_.column().append(content_);
  }
}

SlotsHost::~SlotsHost() {
  removeFilms();
  views_.clear();
  for (const auto& slot : slots_) grid_.remove(*slot->widget);
  while (auto* const child = host_.column().get_last_child()) {
    if (child == &host_.slot()) break;
    host_.column().remove(*child);
  }
}

void SlotsHost::put(Gtk::Widget& widget) {
  grid_.attach(widget, placed_ % columns, placed_ / columns);
  ++placed_;
  if (!groups_.empty()) groups_.back().push_back(&widget);
}

void SlotsHost::showGroup(std::size_t group) {
  for (std::size_t number = 0; number < groups_.size(); ++number) {
    for (Gtk::Widget* const widget : groups_[number]) widget->set_visible(number == group);
  }
}

gint64 SlotsHost::frames() { return host_.window().get_frame_clock()->get_frame_counter(); }

std::unique_ptr<SlotsHost::Slot> SlotsHost::makeSlot() {
  auto slot = std::make_unique<Slot>();
  slot->view = XAdView::create({0, 0, 320, 50});
  slot->view->setSlotConfiguration(host_.settings);
  slot->events = std::make_shared<XAdViewDelegate>(
      XAdViewDelegate{.xAdViewDidLoad = [told = slot.get()](XAdView&) { ++told->loads; }});
  slot->view->delegate.set(slot->events);
  slot->widget = std::make_unique<gtk::AdSlot>(slot->view);
  return slot;
}

double SlotsHost::add(const std::string& campaign) {
  auto& slot = *slots_.emplace_back(makeSlot());
  put(*slot.widget);
  return load(slot, campaign);
}

double SlotsHost::refresh(std::size_t slot) { return load(*slots_.at(slot), "frame-banner"); }

void SlotsHost::request(Slot& slot, const std::string& campaign) {
  const std::string domain =
      host_.server().baseUrl().substr(std::string_view{"http://"}.size()) + "/ads";
  slot.view->loadWithDomainName(domain, campaign, "Bottom1");
}

double SlotsHost::load(Slot& slot, const std::string& campaign) {
  const int before = slot.loads;
  const auto start = Clock::now();
  request(slot, campaign);
  test::runUntil([&] { return slot.loads > before; }, patience);
  return millisecondsSince(start);
}

void SlotsHost::addFilm(const std::string& campaign) {
  player_ = Runtime::current().platform().moviePlayers->create({0, 0, 320, 180});
  player_->setControlStyle(MovieControlStyle::none);  // the bare clip has no bar either
  movie_ = std::make_unique<gtk::MovieSlot>(player_);
  content_.append(*movie_);
  preroll_ = makeSlot();
  preroll_->view->setMoviePlayerInstance(player_);
  content_.append(*preroll_->widget);
  request(*preroll_, campaign);
  test::runUntil([&] { return player_->isPreparedToPlay(); }, patience);
}

double SlotsHost::addView(const std::string& campaign, Processes processes, int boxes) {
  std::ifstream file{std::string{TAVO_SLOTS_CAMPAIGNS} + "/" + campaign + "/creative.html"};
  std::string creative{std::istreambuf_iterator<char>{file}, {}};
  const std::string_view placeholder{"${server}"};
  for (auto at = creative.find(placeholder); at != std::string::npos;
       at = creative.find(placeholder)) {
    creative.replace(at, placeholder.size(), host_.server().baseUrl());
  }
  put(*places_.emplace_back(std::make_unique<Gtk::Box>()));
  Gtk::Box* place = places_.back().get();
  if (boxes > 1) place->set_overflow(Gtk::Overflow::HIDDEN);
  for (int box = 1; box < boxes; ++box) {
    auto* const inner = Gtk::make_managed<Gtk::Box>();
    place->append(*inner);
    place = inner;
  }
  const bool begins = processes == Processes::own || views_.size() % viewsOfProcess == 0;
  const auto start = Clock::now();
  const BareBanner* const related = begins ? nullptr : views_.back().get();
  views_.push_back(
      std::make_unique<BareBanner>(*place, creative, host_.server().baseUrl() + "/", related));
  test::runUntil([&] { return views_.back()->isLoaded(); }, patience);
  return millisecondsSince(start);
}

void SlotsHost::addClip(Clip clip) {
  clipPlace_.set_child(clipBox_);
  content_.append(clipPlace_);
  clip_ = std::make_unique<BareVideo>(clipBox_,
                                      host_.server().baseUrl() + "/assets/vast-preroll/clip.mp4");
  auto* const button = Gtk::make_managed<Gtk::Button>(clip == Clip::withTime ? "00:04" : "\u2715");
  button->set_has_frame(false);
  button->set_halign(Gtk::Align::END);
  button->set_valign(Gtk::Align::START);
  clipPlace_.add_overlay(*button);
  if (clip == Clip::withTime) {
    countdown_ = Glib::signal_timeout().connect_seconds(
        [this, button] {
          const auto left = gtk_media_stream_get_duration(clip_->stream()) -
                            gtk_media_stream_get_timestamp(clip_->stream());
          button->set_label("00:0" + std::to_string(left / G_USEC_PER_SEC));
          return true;
        },
        1);
  } else {
    auto* const bar = Glib::wrap(gtk_media_controls_new(clip_->stream()));
    bar->add_css_class("osd");
    bar->set_valign(Gtk::Align::END);
    clipPlace_.add_overlay(*bar);
  }
  test::runUntil([&] { return clip_->isPrepared(); }, patience);
}

void SlotsHost::removeFilms() {
  if (movie_) {
    content_.remove(*movie_);
    content_.remove(*preroll_->widget);
  }
  preroll_.reset();
  movie_.reset();
  player_.reset();
  countdown_.disconnect();
  if (clip_) {
    while (auto* const above = clipBox_.get_next_sibling()) clipPlace_.remove_overlay(*above);
    clip_.reset();
    content_.remove(clipPlace_);
  }
}

void SlotsHost::scrollAway() {
  test::runUntil([&] { return scroller_.get_vadjustment()->get_upper() > 3'000; }, patience);
  scroller_.get_vadjustment()->set_value(2'500);
}

}  // namespace tavo::benchmark
