#include "AdPlayer/Source/PlayServer.h"

#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Gtk/Guarded.h"

namespace tavo::adplayer {

namespace {

constexpr std::uintmax_t largestFile = std::uintmax_t{256} * 1024 * 1024;

constexpr std::string_view pixel{
    "GIF89a\x01\x00\x01\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff!\xf9\x04\x01\x00\x00\x00\x00,\x00"
    "\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02L\x01\x00;",
    42};

std::string typeOf(const std::filesystem::path& file) {
  static constexpr std::array<std::pair<std::string_view, const char*>, 17> types{
      {{".html", "text/html"},
       {".htm", "text/html"},
       {".js", "text/javascript"},
       {".css", "text/css"},
       {".json", "application/json"},
       {".xml", "text/xml"},
       {".png", "image/png"},
       {".jpg", "image/jpeg"},
       {".jpeg", "image/jpeg"},
       {".gif", "image/gif"},
       {".svg", "image/svg+xml"},
       {".webp", "image/webp"},
       {".mp4", "video/mp4"},
       {".webm", "video/webm"},
       {".mp3", "audio/mpeg"},
       {".woff2", "font/woff2"},
       {".woff", "font/woff"}}};
  const std::string ending = file.extension().string();
  for (const auto& [known, type] : types) {
    if (ending == known) return type;
  }
  return "application/octet-stream";
}

void reply(SoupServerMessage* message, unsigned status, const std::string& type,
           std::string_view body) {
  soup_server_message_set_status(message, status, nullptr);
  soup_server_message_set_response(message, type.c_str(), SOUP_MEMORY_COPY, body.data(),
                                   body.size());
}

bool isAdRequest(std::string_view path) {
  return path.find("/sdk/") != std::string_view::npos ||
         path.find("/sdkl/") != std::string_view::npos;
}

}  // namespace

PlayServer::PlayServer()
    : server_{gtk::GPtr<SoupServer>::adopt(soup_server_new(nullptr, nullptr))} {
  const auto handler = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*,
                          gpointer self) {
    gtk::guarded(
        [&] { static_cast<PlayServer*>(self)->handle(message, path == nullptr ? "" : path); });
  };
  soup_server_add_handler(server_.get(), nullptr, handler, this, nullptr);
  GError* failure = nullptr;
  if (!soup_server_listen_local(server_.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, &failure)) {
    const std::string why = failure == nullptr ? "" : failure->message;
    g_clear_error(&failure);
    throw std::runtime_error("No free port on this machine: " + why);
  }
  GSList* const addresses = soup_server_get_uris(server_.get());
  baseUrl_ =
      "http://127.0.0.1:" + std::to_string(g_uri_get_port(static_cast<GUri*>(addresses->data)));
  g_slist_free_full(addresses, reinterpret_cast<GDestroyNotify>(g_uri_unref));
}

PlayServer::~PlayServer() { soup_server_disconnect(server_.get()); }

void PlayServer::setFolder(const std::filesystem::path& folder) {
  std::error_code failure;
  folder_ = std::filesystem::canonical(folder.empty() ? "." : folder, failure);
}

void PlayServer::handle(SoupServerMessage* message, const std::string& path) {
  constexpr std::string_view files = "/files/";
  if (isAdRequest(path)) {
    reply(message, answer_.empty() ? 404 : 200, "application/json", answer_);
  } else if (path.starts_with(files)) {
    sendFile(message, path.substr(files.size()));
  } else if (path.starts_with("/track/")) {
    reply(message, 200, "image/gif", pixel);
  } else if (path == "/clicked") {
    reply(message, 200, "text/html",
          "<!doctype html><title>Clicked</title><h1>Clicked</h1><p>The landing page.</p>");
  } else {
    reply(message, 404, "text/plain", "Not here.");
  }
}

void PlayServer::sendFile(SoupServerMessage* message, const std::string& name) {
  std::error_code failure;
  const auto file = std::filesystem::canonical(folder_ / name, failure);
  const bool isInside = !folder_.empty() && !failure &&
                        file.string().starts_with(folder_.string() + "/") &&
                        std::filesystem::is_regular_file(file, failure) &&
                        std::filesystem::file_size(file, failure) <= largestFile;
  if (!isInside) return reply(message, 404, "text/plain", "Not here.");
  std::ifstream stream{file, std::ios::binary};
  const std::string bytes{std::istreambuf_iterator<char>{stream}, {}};
  reply(message, 200, typeOf(file), bytes);
}

}  // namespace tavo::adplayer
