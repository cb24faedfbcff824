#include "AdPlayer/Source/PlayServer.h"

#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

#include "AdServer/LocalPort.h"
#include "AdServer/PlainReplies.h"
#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

using adserver::Reply;

constexpr std::uintmax_t largestFile = std::uintmax_t{256} * 1024 * 1024;

Reply notHere() { return adserver::plainReply(404, "Not here."); }

bool isAdRequest(std::string_view path) {
  return contains(path, "/sdk/") || contains(path, "/sdkl/");
}

}  // namespace

PlayServer::PlayServer()
    : server_{adserver::listeningServer(0)}, baseUrl_{adserver::baseUrlOf(server_.get())} {
  const auto handler = [](SoupServer*, SoupServerMessage* message, const char* path, GHashTable*,
                          gpointer self) {
    gtk::guarded([&] {
      auto& server = *static_cast<PlayServer*>(self);
      server.sender_.send(server.replyTo(path == nullptr ? "" : path), message);
    });
  };
  soup_server_add_handler(server_.get(), nullptr, handler, this, nullptr);
}

PlayServer::~PlayServer() { soup_server_disconnect(server_.get()); }

void PlayServer::setFolder(const std::filesystem::path& folder) {
  std::error_code failure;
  folder_ = std::filesystem::canonical(folder.empty() ? "." : folder, failure);
}

Reply PlayServer::replyTo(const std::string& path) const {
  constexpr std::string_view files = "/files/";
  if (isAdRequest(path)) {
    return answer_.empty() ? notHere() : adserver::madeReply("application/json", answer_);
  }
  if (path.starts_with(files)) {
    const gtk::GText name{g_uri_unescape_string(path.c_str() + files.size(), nullptr)};
    return name ? fileReply(name.get()) : notHere();
  }
  if (path.starts_with("/track/")) return adserver::pixelReply();
  return path == "/clicked" ? adserver::landingReply("The landing page.") : notHere();
}

Reply PlayServer::fileReply(const std::string& name) const {
  std::error_code failure;
  const auto file = std::filesystem::canonical(folder_ / name, failure);
  const bool isInside = !folder_.empty() && !failure &&
                        file.string().starts_with(folder_.string() + "/") &&
                        std::filesystem::is_regular_file(file, failure) &&
                        std::filesystem::file_size(file, failure) <= largestFile;
  if (!isInside) return notHere();
  std::ifstream stream{file, std::ios::binary};
  return adserver::madeReply(adserver::contentTypeOf(file.filename().string()),
                             {std::istreambuf_iterator<char>{stream}, {}});
}

}  // namespace tavo::adplayer
