#pragma once

#include <libsoup/soup.h>

#include <list>
#include <string>

#include "AdServer/RequestRecord.h"
#include "Gtk/GPtr.h"

namespace tavo::adserver {

// The event streams of pages that watch: each gets what was recorded so far, then every request as
// it comes. Used on the server's thread only.
class LiveEvents {
 public:
  explicit LiveEvents(const RequestRecord& record) : record_{record} {}
  ~LiveEvents();
  LiveEvents(const LiveEvents&) = delete;
  LiveEvents& operator=(const LiveEvents&) = delete;

  // Answers the message with a stream; false when there are too many already.
  [[nodiscard]] bool add(SoupServerMessage* message);
  void tell(const RecordedRequest& request);

 private:
  void drop(SoupServerMessage* message);

  const RequestRecord& record_;
  std::list<gtk::GPtr<SoupServerMessage>> watching_;
};

}  // namespace tavo::adserver
