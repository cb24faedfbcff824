#include "AdPlayer/PlayerWindow.h"

#include <tavo/MoviePlayerFactory.h>
#include <tavo/Runtime.h>

namespace tavo::adplayer {

namespace {
constexpr int phoneWidth = 360;
constexpr int phoneHeight = 640;
constexpr Rect bannerFrame{0, 0, 320, 50};
constexpr Rect movieFrame{0, 0, 320, 180};
}  // namespace

PlayerWindow::PlayerWindow(const std::vector<CampaignEntry>& campaigns) : campaigns_{campaigns} {
  set_title("Ad player");
  set_default_size(phoneWidth, phoneHeight);
  std::vector<Glib::ustring> titles;
  for (const auto& campaign : campaigns_) titles.emplace_back(campaign.title);
  picker_.set_model(Gtk::StringList::create(titles));
  picker_.set_margin(12);
  picker_.property_selected().signal_changed().connect([this] {
    const auto index = picker_.get_selected();
    if (!selecting_ && onPick && index < campaigns_.size()) onPick(campaigns_[index].name);
  });
  events_.set_selection_mode(Gtk::SelectionMode::NONE);
  scroller_.set_child(events_);
  scroller_.set_vexpand(true);
  column_.append(picker_);
  column_.append(scroller_);
  set_child(column_);
  renewSlot();
}

void PlayerWindow::renewSlot() {
  if (slot_) column_.remove(*slot_);
  if (movie_) column_.remove(*movie_);
  movie_.reset();
  adView_ = XAdView::create(bannerFrame);
  slot_ = std::make_unique<gtk::AdSlot>(adView_);
  slot_->set_margin(12);
  column_.append(*slot_);
}

void PlayerWindow::lendPlayer() {
  const auto player = Runtime::current().platform().moviePlayers->create(movieFrame);
  movie_ = std::make_unique<gtk::MovieSlot>(player);
  column_.insert_child_after(*movie_, scroller_);
  adView_->setMoviePlayerInstance(player);
}

void PlayerWindow::select(const std::string& campaign) {
  selecting_ = true;
  for (std::size_t index = 0; index < campaigns_.size(); ++index) {
    if (campaigns_[index].name == campaign) picker_.set_selected(static_cast<guint>(index));
  }
  selecting_ = false;
}

void PlayerWindow::clearEvents() {
  while (auto* row = events_.get_row_at_index(0)) events_.remove(*row);
}

void PlayerWindow::show(const PlayerEvent& event) {
  auto* label = Gtk::make_managed<Gtk::Label>();
  label->set_text(event.kind + "  " + event.text);
  label->set_xalign(0);
  label->set_margin_start(12);
  label->set_margin_end(12);
  label->set_wrap(true);
  label->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
  label->set_natural_wrap_mode(Gtk::NaturalWrapMode::NONE);
  events_.append(*label);
}

}  // namespace tavo::adplayer
