#pragma once

#include <libsoup/soup.h>

#include <filesystem>
#include <string>

#include "AdServer/ReplySender.h"
#include "Gtk/GPtr.h"

namespace tavo::adplayer {

// The smallest ad server that there can be, for one creative: it answers every ad request with one
// answer, and hands out the files beside the creative. On the loopback interface, a port of its
// own; it serves while the main context runs.
//
//   <any path>/sdk|sdkl/...   the answer
//   /files/<path>             a file of the folder, never one outside of it
//   /track/...                a tracking ping; answered with one pixel
//   /clicked                  a landing page
class PlayServer {
 public:
  // Throws std::runtime_error, with what to do, when it cannot listen.
  PlayServer();
  ~PlayServer();
  PlayServer(const PlayServer&) = delete;
  PlayServer& operator=(const PlayServer&) = delete;

  [[nodiscard]] const std::string& baseUrl() const { return baseUrl_; }
  void setAnswer(std::string json) { answer_ = std::move(json); }
  void setFolder(const std::filesystem::path& folder);

 private:
  [[nodiscard]] adserver::Reply replyTo(const std::string& path) const;
  [[nodiscard]] adserver::Reply fileReply(const std::string& name) const;

  adserver::ReplySender sender_;
  gtk::GPtr<SoupServer> server_;
  std::string baseUrl_;
  std::string answer_;
  std::filesystem::path folder_;  // canonical; empty: no files
};

}  // namespace tavo::adplayer
