#pragma once

#include <libsoup/soup.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "AdServer/HeldReplies.h"
#include "AdServer/ReplyMaker.h"
#include "AdServer/RequestRecord.h"
#include "Gtk/GPtr.h"

namespace tavo::adserver {

// A sample ad server on the loopback interface.
//
// It runs on the thread-default main context of the thread that creates it and serves while that
// context is iterated; create and destroy it on that thread. Paths (see Route.h):
//
//   <any path>/sdk|sdkl/<campaign>/@<position>   the campaign's answer
//   /assets/<campaign>/<file>                    a file of the campaign; ${server} is filled in
//                                                in .html and .xml files
//   /track/<campaign>/<event>                    a tracking ping; answered with one pixel
//   /clicked/<campaign>                          a landing page
//   /campaigns                                   the campaigns with titles, as JSON
//   /record                                      every request so far, as JSON; DELETE empties it
//
// The two last are not recorded themselves. Campaigns are read from the folder at each request.
class AdServer {
 public:
  // Port 0 takes any free one. Throws std::runtime_error when it cannot listen.
  explicit AdServer(const std::filesystem::path& campaignFolder, std::uint16_t port = 0);
  ~AdServer();
  AdServer(const AdServer&) = delete;
  AdServer& operator=(const AdServer&) = delete;

  // "http://127.0.0.1:<port>", without a slash at the end. Any thread.
  [[nodiscard]] const std::string& baseUrl() const { return baseUrl_; }

  // What was asked so far. Any thread.
  [[nodiscard]] RequestRecord& record() { return record_; }

 private:
  void handle(SoupServerMessage* message);
  void send(const Reply& reply, SoupServerMessage* message);

  RequestRecord record_;
  gtk::GPtr<SoupServer> server_;
  std::string baseUrl_;
  ReplyMaker replies_;
  HeldReplies held_;
};

}  // namespace tavo::adserver
