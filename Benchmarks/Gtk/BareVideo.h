#pragma once

#include <gtkmm.h>

#include <string>

namespace tavo::benchmark {

// What a host would write without the library: the toolkit's own media file, from its address.
class BareVideo {
 public:
  BareVideo(Gtk::Box& place, const std::string& url);
  ~BareVideo();
  BareVideo(const BareVideo&) = delete;
  BareVideo& operator=(const BareVideo&) = delete;

  [[nodiscard]] bool isPrepared() const { return gtk_media_stream_is_prepared(stream_) != FALSE; }
  [[nodiscard]] GtkMediaStream* stream() const { return stream_; }
  // Where it cannot be had; the toolkit's module for media may be missing.
  [[nodiscard]] const GError* error() const { return gtk_media_stream_get_error(stream_); }

 private:
  Gtk::Box& place_;
  GtkMediaStream* stream_;
  GtkWidget* picture_;
};

}  // namespace tavo::benchmark
