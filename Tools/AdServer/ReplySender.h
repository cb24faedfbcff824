#pragma once

#include <libsoup/soup.h>

#include "AdServer/HeldReplies.h"
#include "AdServer/Reply.h"

namespace tavo::adserver {

// Sends replies the way their delivery says: late, in pieces, packed, cut off, or not at all. Used
// on the server's thread only.
class ReplySender {
 public:
  void send(const Reply& reply, SoupServerMessage* message);

 private:
  HeldReplies held_;
};

}  // namespace tavo::adserver
