#include "BareVideo.h"

namespace tavo::benchmark {

BareVideo::BareVideo(Gtk::Box& place, const std::string& url) : place_{place} {
  GFile* file = g_file_new_for_uri(url.c_str());
  stream_ = gtk_media_file_new_for_file(file);
  g_object_unref(file);
  picture_ = gtk_picture_new_for_paintable(GDK_PAINTABLE(stream_));
  gtk_widget_set_size_request(picture_, 320, 180);
  gtk_box_prepend(place_.gobj(), picture_);
  gtk_media_stream_play(stream_);
}

BareVideo::~BareVideo() {
  gtk_media_stream_pause(stream_);
  gtk_box_remove(place_.gobj(), picture_);
  g_object_unref(stream_);
}

}  // namespace tavo::benchmark
