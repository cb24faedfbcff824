#include "Film/FilmServer.h"

#include <libsoup/soup.h>

#include <cstdio>
#include <cstdlib>
#include <future>

namespace tavo::fuzz {

FilmServer::FilmServer() {
  std::promise<unsigned> started;
  thread_ = std::thread{[this, &started] {
    g_main_context_push_thread_default(context_.get());
    const auto server = gtk::GPtr<SoupServer>::adopt(soup_server_new(nullptr, nullptr));
    const auto answer = [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                           gpointer self) {
      auto& films = *static_cast<FilmServer*>(self);
      const std::scoped_lock lock{films.mutex_};
      soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
      soup_server_message_set_response(message, "video/mp4", SOUP_MEMORY_COPY, films.film_.data(),
                                       films.film_.size());
    };
    soup_server_add_handler(server.get(), nullptr, answer, this, nullptr);
    soup_server_listen_local(server.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
    GSList* const addresses = soup_server_get_uris(server.get());
    started.set_value(addresses == nullptr ? 0
                                           : static_cast<unsigned>(g_uri_get_port(
                                                 static_cast<GUri*>(addresses->data))));
    g_slist_free_full(addresses, reinterpret_cast<GDestroyNotify>(&g_uri_unref));
    g_main_loop_run(loop_.get());
    soup_server_disconnect(server.get());
    g_main_context_pop_thread_default(context_.get());
  }};
  port_ = started.get_future().get();
  if (port_ == 0) {
    std::fputs("The server of films cannot listen.\n", stderr);
    std::abort();
  }
}

FilmServer::~FilmServer() {
  g_main_loop_quit(loop_.get());
  thread_.join();
}

void FilmServer::show(const std::uint8_t* data, std::size_t size) {
  const std::scoped_lock lock{mutex_};
  film_.assign(data, data + size);
}

std::string FilmServer::url() {
  return "http://127.0.0.1:" + std::to_string(port_) + '/' + std::to_string(++films_) + ".mp4";
}

}  // namespace tavo::fuzz
