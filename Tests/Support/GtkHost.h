#pragma once

#include <gtkmm.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>

#include "AdPlayer/Screenshot.h"
#include "AdServer/AdServer.h"
#include "Support/TemporaryFolder.h"

namespace tavo::test {

// A real host on a real screen: a window with one banner slot, and a sample ad server beside it.
class GtkHost {
 public:
  // `adjust` may put its own services into the platform before anything uses them; `adNetwork` is
  // the library of an external ad network, empty for none.
  explicit GtkHost(const std::string& campaigns, const std::function<void(Platform&)>& adjust = {},
                   const std::string& adNetwork = {}, const Limits& limits = {});
  ~GtkHost();

  // Puts a new banner into the window, in place of the former one, and forgets the host calls of
  // that.
  void makeBanner(const Rect& frame = {0, 0, 320, 50});
  void load(const std::string& campaign);

  // Turns the loop until `done`, or for far longer than anything here takes; returns whether it is
  // done.
  bool runUntil(const std::function<bool()>& done) const;

  // Until `widget`, or the window, was drawn `count` times more.
  bool waitForFrames(Gtk::Widget& widget, int count = 4) const;
  bool waitForFrames() const { return waitForFrames(*window_); }

  // For a person to look at: leaves a picture of the window, or of `widget`, in the folder that
  // TAVO_TEST_PICTURES names, once what was drawn last has had time to get there.
  void keepPicture(const std::string& name);
  void keepPicture(Gtk::Widget& widget, const std::string& name);

  // The colour of a pixel of the window, by its place in the slot.
  [[nodiscard]] Color pixelInSlot(int x, int y);
  // Waits for a colour there (each component within 1/32).
  bool waitForPixel(int x, int y, const Color& color);
  // The same by its place in the window.
  bool waitForPixelInWindow(int x, int y, const Color& color);

  [[nodiscard]] std::size_t recorded(adserver::RequestKind kind);
  // Host calls so far, by their names.
  [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }

  [[nodiscard]] adserver::AdServer& server() { return *server_; }
  [[nodiscard]] const std::shared_ptr<XAdView>& banner() { return banner_; }
  [[nodiscard]] gtk::AdSlot& slot() { return *slot_; }
  [[nodiscard]] Gtk::Window& window() { return *window_; }
  [[nodiscard]] Gtk::Box& column() { return column_; }
  std::shared_ptr<XAdSlotConfiguration> settings = std::make_shared<XAdSlotConfiguration>();

 private:
  TemporaryFolder folder_;
  std::shared_ptr<Gtk::Application> application_;
  std::unique_ptr<adserver::AdServer> server_;
  std::unique_ptr<Runtime> runtime_;
  std::unique_ptr<Gtk::Window> window_;
  Gtk::Box column_{Gtk::Orientation::VERTICAL};
  std::shared_ptr<XAdView> banner_;
  std::unique_ptr<gtk::AdSlot> slot_;
  std::vector<std::string> calls_;
  std::shared_ptr<const XAdViewDelegate> events_;
};

}  // namespace tavo::test
