#pragma once

#include <libsoup/soup.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "AdServer/Forwarder.h"
#include "AdServer/LiveEvents.h"
#include "AdServer/ReplyMaker.h"
#include "AdServer/ReplySender.h"
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
//   /                                            a page that shows all of this as it comes
//   /campaigns                                   the campaigns with titles, as JSON
//   /record                                      every request so far, as JSON; DELETE empties it
//   /events                                      the same as a stream of events
//
// The four last are not recorded themselves, and answer to this machine's own names only: a site
// that points a name of its own at this machine reads nothing. Campaigns are read from the folder
// at each request.
class AdServer {
 public:
  // Port 0 takes any free one. Throws std::runtime_error, with what to do, when it cannot listen.
  explicit AdServer(const std::filesystem::path& campaignFolder, std::uint16_t port = 0);
  ~AdServer();
  AdServer(const AdServer&) = delete;
  AdServer& operator=(const AdServer&) = delete;

  // Asks a real server for everything but the server's own pages from now on, and writes the
  // answers down as campaigns (see Forwarder). Throws std::runtime_error for what cannot be.
  void forwardTo(const std::string& target, const std::filesystem::path& into);

  // "http://127.0.0.1:<port>", without a slash at the end. Any thread.
  [[nodiscard]] const std::string& baseUrl() const { return baseUrl_; }

  // What was asked so far. Any thread.
  [[nodiscard]] RequestRecord& record() { return record_; }

 private:
  void handle(SoupServerMessage* message);
  void forward(SoupServerMessage* message, const Route& route);
  void conclude(SoupServerMessage* message, const Route& route, const Reply& reply);

  RequestRecord record_;
  gtk::GPtr<SoupServer> server_;
  std::string baseUrl_;
  ReplyMaker replies_;
  ReplySender sender_;
  LiveEvents live_{record_};
  std::unique_ptr<Forwarder> forwarder_;  // in front of a real server only
};

}  // namespace tavo::adserver
