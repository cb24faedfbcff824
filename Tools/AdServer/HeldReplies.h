#pragma once

#include <libsoup/soup.h>

#include <chrono>
#include <list>

#include "Gtk/GPtr.h"

namespace tavo::adserver {

// Requests whose answer is late or never comes. Used on the server's thread only.
class HeldReplies {
 public:
  HeldReplies() = default;
  HeldReplies(const HeldReplies&) = delete;
  HeldReplies& operator=(const HeldReplies&) = delete;

  // Ends the connections of all that are still held.
  ~HeldReplies();

  // Sends the message's answer after the delay.
  void holdFor(std::chrono::milliseconds delay, SoupServerMessage* message);

  // Keeps the connection open in silence for as long as this lives.
  void holdForGood(SoupServerMessage* message);

 private:
  // Whoever drops a timer wants no further call of it.
  static void endSource(GSource* timer);

  struct Held {
    HeldReplies* owner = nullptr;
    gtk::GPtr<SoupServerMessage> message;
    gtk::GOwned<GSource, &endSource> timer;
  };

  Held& hold(SoupServerMessage* message);
  void release(const Held& held);

  std::list<Held> held_;  // a list, because the timers point into it
};

// Ends a request's connection at once, without an answer.
void endConnection(SoupServerMessage* message);

}  // namespace tavo::adserver
