#pragma once

#include <gtkmm.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <tavo/WebView.h>
#include <tavo/XAdInterstitialViewController.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>

#include "Services/RunLoop.h"

namespace tavo::adplayer {

// The screen on which the checklist's creatives play: a window as large as a phone with a slot in a
// long page that can be scrolled. Does what a creative asks of a person and of a host. Main thread
// only.
class MraidStage {
 public:
  struct Settings {
    bool standards = false;
    double patience = 10;                     // seconds, of a page for what should happen in it
    std::string pictureFolder{};              // empty: no pictures
    std::vector<std::string> pointsNotDue{};  // by name; a page does not wait for them for long
  };
  // The query of a request, escapes taken away.
  using Fields = std::map<std::string, std::string>;

  explicit MraidStage(Settings settings);
  ~MraidStage();
  MraidStage(const MraidStage&) = delete;
  MraidStage& operator=(const MraidStage&) = delete;

  // Plays the creative of that name in a fresh slot, or above the window. `ended`: it is gone, and
  // its last words have had time to arrive. May be told more than once.
  void play(const std::string& server, const std::string& creative, std::function<void()> ended);
  // Takes it away.
  void clear();

  // Does what a creative has asked for, and answers it later.
  void carryOut(const Fields& asked);

 private:
  using Answer = std::function<void(const std::string& value)>;

  void makeSlot();
  void playInterstitial(const std::string& domain, std::function<void()> ended);
  void when(std::function<bool()> isSo, std::function<void(bool)> then);
  void afterFrames(int count, std::function<void()> then);
  void answerPages(const std::string& id, const std::string& value);
  [[nodiscard]] std::vector<std::shared_ptr<WebView>> pages() const;
  [[nodiscard]] Point pointIn(const Fields& asked) const;
  [[nodiscard]] bool isCovered() const;
  [[nodiscard]] Gtk::Window* dialog() const;
  [[nodiscard]] std::string patienceText() const;
  [[nodiscard]] std::string placeText() const;
  [[nodiscard]] std::string controlText(const Point& point) const;
  void reshape(int width, int height, const Answer& answer);
  void scroll(double to, const Answer& answer);
  void press(const Point& point, const Answer& answer);
  void escape();
  void minimise();
  void takePicture(const std::string& name, const Answer& answer);

  const Settings settings_;
  std::unique_ptr<Gtk::Window> window_;
  Gtk::ScrolledWindow scroller_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  Gtk::Box above_{Gtk::Orientation::VERTICAL};
  Gtk::Box below_{Gtk::Orientation::VERTICAL};
  std::shared_ptr<XAdView> adView_;
  std::unique_ptr<gtk::AdSlot> slot_;
  std::shared_ptr<XAdInterstitialViewController> interstitial_;
  std::shared_ptr<const XAdInterstitialViewControllerDelegate> events_;
  std::function<void()> ended_;
  bool isSecondShown_ = false;
  std::map<int, Timer> timers_;
  int lastTimer_ = 0;
};

}  // namespace tavo::adplayer
