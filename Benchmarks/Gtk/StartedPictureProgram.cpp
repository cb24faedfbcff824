// What a host would write by hand with the toolkit and libsoup: asks the ad server, takes the
// picture's address from the answer, fetches it, and ends once it is painted. Without a server it
// only starts.
#include <gtkmm.h>
#include <libsoup/soup.h>

#include <functional>
#include <string>

#include "StartedProgram.h"

namespace {

SoupSession* session() {
  static SoupSession* const only = soup_session_new();
  return only;
}

using Then = std::function<void(GBytes*)>;

void fetch(const std::string& url, Then then) {
  SoupMessage* const message = soup_message_new("GET", url.c_str());
  soup_session_send_and_read_async(
      session(), message, G_PRIORITY_DEFAULT, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Then> called{static_cast<Then*>(data)};
        GBytes* const bytes =
            soup_session_send_and_read_finish(SOUP_SESSION(source), result, nullptr);
        if (bytes != nullptr) (*called)(bytes);
        g_bytes_unref(bytes);
      },
      new Then{std::move(then)});
  g_object_unref(message);
}

std::string pictureIn(GBytes* answer) {
  gsize length = 0;
  const auto* const data = static_cast<const char*>(g_bytes_get_data(answer, &length));
  const std::string text{data, length};
  const std::string key = "\"FileUrl\": \"";
  const auto start = text.find(key) + key.size();
  return text.substr(start, text.find('"', start) - start);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    tavo::benchmark::reportStart();
    return 0;
  }
  const auto app =
      Gtk::Application::create("com.example.started", Gio::Application::Flags::NON_UNIQUE);
  app->signal_activate().connect([&] {
    static Gtk::Window window;
    static Gtk::Picture picture;
    picture.set_size_request(320, 50);
    picture.set_halign(Gtk::Align::CENTER);
    picture.set_valign(Gtk::Align::CENTER);
    window.set_child(picture);
    app->add_window(window);
    window.present();
    fetch("http://" + std::string{argv[1]} + "/ads/sdk/picture-banner/@Bottom1",
          [](GBytes* answer) {
            fetch(pictureIn(answer), [](GBytes* bytes) {
              GdkTexture* const texture = gdk_texture_new_from_bytes(bytes, nullptr);
              gtk_picture_set_paintable(picture.gobj(), GDK_PAINTABLE(texture));
              g_object_unref(texture);
              tavo::benchmark::reportAfterPaint(window.gobj());
            });
          });
  });
  return app->run();
}
