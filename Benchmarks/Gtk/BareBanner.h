#pragma once

#include <gtkmm.h>
#include <webkit/webkit.h>

#include <string>

namespace tavo::benchmark {

// What a host would write without the library: a new web view for each ad.
class BareBanner {
 public:
  BareBanner(Gtk::Box& place, const std::string& html, const std::string& base);
  ~BareBanner();
  BareBanner(const BareBanner&) = delete;
  BareBanner& operator=(const BareBanner&) = delete;

  [[nodiscard]] bool isLoaded() const { return loaded_; }

 private:
  Gtk::Box& place_;
  GtkWidget* view_;
  bool loaded_ = false;
};

}  // namespace tavo::benchmark
