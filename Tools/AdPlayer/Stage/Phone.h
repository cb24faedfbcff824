#pragma once

#include <gtkmm.h>

#include <memory>
#include <string>
#include <vector>

#include <tavo/XAdView.h>
#include <tavo/gtk/AdArea.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/MovieSlot.h>

#include "AdPlayer/Source/Placement.h"

namespace tavo::adplayer {

// A screen that phones and tablets have.
struct PhonePreset {
  const char* name;
  int width;  // points, upright
  int height;
};
[[nodiscard]] const std::vector<PhonePreset>& phonePresets();

// The host application on the simulated phone: a status bar and, below it, an article with a slot
// and, for a pre-roll, a player with a film of its own. What leaves the slot covers the screen
// below the status bar. Main thread only, in a running runtime.
class Phone : public Gtk::Box {
 public:
  explicit Phone(const PhonePreset& preset);

  // The area that ads take for the screen.
  [[nodiscard]] gtk::AdArea& screen() { return screen_; }

  void setPreset(const PhonePreset& preset);
  void setStatusBar(bool isThere);
  void setLandscape(bool isLandscape);
  [[nodiscard]] bool isLandscape() const { return isLandscape_; }
  // Of the screen, upright or lying as it is now.
  [[nodiscard]] Size screenSize() const;

  // Takes the ad of before out and puts an empty slot of `size` in; the view is in no slot while an
  // interstitial is asked for.
  void clear();
  std::shared_ptr<XAdView> makeSlot(const Size& size);
  // Puts a player above the slot that plays `film`, and lends it to the slot's view.
  void lendPlayer(const Url& film);
  // Puts what stands beside a film below it, in place of the one before.
  void addCompanion(const std::shared_ptr<View>& companion);
  [[nodiscard]] const std::shared_ptr<XAdView>& adView() const { return adView_; }

  void setSlotHidden(bool isHidden);
  void setCovered(bool isCovered);
  void setScrolledAway(bool isAway);
  void setLocked(bool isLocked);

 private:
  void fillArticle();
  void resize();

  PhonePreset preset_;
  bool isLandscape_ = false;
  Gtk::CenterBox statusBar_;
  gtk::AdArea screen_;
  Gtk::Stack faces_;  // the article, and what covers it
  Gtk::ScrolledWindow scroller_;
  Gtk::Box article_{Gtk::Orientation::VERTICAL};
  Gtk::Box place_{Gtk::Orientation::VERTICAL};  // where slot and player stand
  std::shared_ptr<XAdView> adView_;
  std::unique_ptr<gtk::AdSlot> slot_;
  std::unique_ptr<gtk::MovieSlot> movie_;
  std::unique_ptr<gtk::AdSlot> companion_;
};

}  // namespace tavo::adplayer
