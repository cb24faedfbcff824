#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/MovieSlot.h>

#include "AdPlayer/EventReport.h"

namespace tavo::adplayer {

struct CampaignEntry {
  std::string name;
  std::string title;
};

// A window the size of a phone: a campaign to pick, the events as they come, and the banner slot
// at the bottom.
class PlayerWindow : public Gtk::Window {
 public:
  explicit PlayerWindow(const std::vector<CampaignEntry>& campaigns);

  // Called with the name of the campaign that a person picked.
  std::function<void(const std::string&)> onPick;

  // The ad view of the campaign that is played.
  [[nodiscard]] const std::shared_ptr<XAdView>& adView() const { return adView_; }
  // Replaces the slot by an empty one, as on a screen that was just opened.
  void renewSlot();
  // Puts a player of the window's own above the slot and lends it to the ad view, for a video.
  void lendPlayer();

  // Selects a campaign without calling `onPick`.
  void select(const std::string& campaign);
  void clearEvents();
  void show(const PlayerEvent& event);

 private:
  std::vector<CampaignEntry> campaigns_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  Gtk::DropDown picker_;
  Gtk::ScrolledWindow scroller_;
  Gtk::ListBox events_;
  std::shared_ptr<XAdView> adView_;
  std::unique_ptr<gtk::AdSlot> slot_;
  std::unique_ptr<gtk::MovieSlot> movie_;
  bool selecting_ = false;
};

}  // namespace tavo::adplayer
