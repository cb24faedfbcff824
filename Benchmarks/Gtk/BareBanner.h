#pragma once

#include <gtkmm.h>
#include <webkit/webkit.h>

#include <string>

namespace tavo::benchmark {

// What a host would write without the library: a new web view for each ad. With `related` it shares
// the process of another, which is the least that a view which is there already can save.
class BareBanner {
 public:
  BareBanner(Gtk::Box& place, const std::string& html, const std::string& base,
             const BareBanner* related = nullptr);
  ~BareBanner();
  BareBanner(const BareBanner&) = delete;
  BareBanner& operator=(const BareBanner&) = delete;

  [[nodiscard]] bool isLoaded() const { return loaded_; }
  // Another page in the same view.
  void load(const std::string& html, const std::string& base);

 private:
  Gtk::Box& place_;
  GtkWidget* view_;
  bool loaded_ = false;
};

}  // namespace tavo::benchmark
