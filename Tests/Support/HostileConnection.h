#pragma once

#include <gio/gio.h>

#include <chrono>
#include <string>
#include <string_view>

#include "Support/Behaviour.h"

namespace tavo::test {

// One connection to a HostileServer, worked on by one thread with blocking calls. Every call ends
// when the stop cancellable is cancelled.
class HostileConnection {
 public:
  HostileConnection(GSocketConnection* connection, GCancellable* stop);

  ~HostileConnection();
  HostileConnection(const HostileConnection&) = delete;
  HostileConnection& operator=(const HostileConnection&) = delete;

  // The request line and headers, blank line included; empty when the client sent no whole request.
  [[nodiscard]] std::string readRequest();

  void behave(const Behaviour& behaviour, std::string_view request);

 private:
  void perform(const PlainAnswer& answer, std::string_view request);
  void perform(const CloseBeforeAnswer& close, std::string_view request);
  void perform(const CloseInBody& close, std::string_view request);
  void perform(const StallInBody& stall, std::string_view request);
  void perform(const NeverAnswer& silence, std::string_view request);
  void perform(const Drip& drip, std::string_view request);
  void perform(const HugeBody& huge, std::string_view request);
  void perform(const GzipBomb& bomb, std::string_view request);
  void perform(const Redirect& redirect, std::string_view request);
  void perform(const RedirectLoop& loop, std::string_view request);
  void perform(const EndlessChain& chain, std::string_view request);
  void perform(const HugeHeader& huge, std::string_view request);
  void perform(const Garbage& garbage, std::string_view request);

  // False when the client hung up or the server stops.
  bool write(std::string_view bytes);
  bool writeFiller(std::uint64_t bytes);

  // True when the time has passed with the client still there.
  bool pause(std::chrono::microseconds time);

  GSocketConnection* connection_;
  GCancellable* stop_;
};

[[nodiscard]] std::string pathOf(std::string_view request);

}  // namespace tavo::test
