#pragma once

#include <gtkmm.h>

#include <memory>
#include <string>
#include <vector>

#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/MovieSlot.h>

#include "BareBanner.h"
#include "BareVideo.h"
#include "Support/GtkHost.h"

namespace tavo::benchmark {

// Turns the loop without waking it for anything of its own but the end.
void turnQuietlyFor(double seconds);

// A host with many slots, three beside one another, in a window that shows all of them, or, with
// `scrolls`, above something so long that they can be scrolled away.
class SlotsHost {
 public:
  enum class Place { window, scroller };
  explicit SlotsHost(Place place = Place::window);
  ~SlotsHost();
  SlotsHost(const SlotsHost&) = delete;
  SlotsHost& operator=(const SlotsHost&) = delete;

  // Ours: a slot with an ad of this campaign. Milliseconds until it was told as loaded.
  double add(const std::string& campaign);
  double refresh(std::size_t slot);
  // A pre-roll in a player of the host's, once it plays.
  void addFilm(const std::string& campaign);

  // Bare: the same creative in a new web view, the same clip in a media file. With `shared`, ten
  // views have a process together, like ours. Milliseconds until the page was there.
  // `boxes` stand around each view, one in the other, of which the outer one cuts.
  enum class Processes { own, shared };
  double addView(const std::string& campaign, Processes processes = Processes::own, int boxes = 1);
  // The clip, with a button on it that counts down, or with a button and the toolkit's own bar.
  enum class Clip { withTime, withBar };
  void addClip(Clip clip);
  void removeFilms();

  // What is put in from now on belongs to the next group; one of them is shown.
  void beginGroup() { groups_.emplace_back(); }
  void showGroup(std::size_t group);

  // Frames that the window has drawn so far.
  [[nodiscard]] gint64 frames();

  void scrollAway();

 private:
  struct Slot {
    std::shared_ptr<XAdView> view;
    std::unique_ptr<gtk::AdSlot> widget;
    std::shared_ptr<const XAdViewDelegate> events;
    int loads = 0;
  };

  [[nodiscard]] std::unique_ptr<Slot> makeSlot();
  void request(Slot& slot, const std::string& campaign);
  double load(Slot& slot, const std::string& campaign);
  void put(Gtk::Widget& widget);

  test::GtkHost host_;
  Gtk::ScrolledWindow scroller_;
  Gtk::Box content_{Gtk::Orientation::VERTICAL};
  Gtk::Grid grid_;
  Gtk::Label end_;
  int placed_ = 0;
  std::vector<std::vector<Gtk::Widget*>> groups_;
  std::vector<std::unique_ptr<Slot>> slots_;
  std::shared_ptr<MoviePlayer> player_;
  std::unique_ptr<gtk::MovieSlot> movie_;
  std::unique_ptr<Slot> preroll_;
  std::vector<std::unique_ptr<Gtk::Box>> places_;
  std::vector<std::unique_ptr<BareBanner>> views_;
  Gtk::Overlay clipPlace_;
  Gtk::Box clipBox_;
  sigc::connection countdown_;
  std::unique_ptr<BareVideo> clip_;
};

}  // namespace tavo::benchmark
