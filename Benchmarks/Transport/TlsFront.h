#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

#include "PingServer.h"

namespace tavo::benchmarks {

// Puts TLS before a PingServer, in a process of its own (nghttpx): one address speaks HTTP/2, where
// the server grants 256 requests at a time, another one HTTP/1.1. This process trusts it from then
// on.
class TlsFront {
 public:
  static constexpr int granted = 256;

  explicit TlsFront(const PingServer& server);
  ~TlsFront();
  TlsFront(const TlsFront&) = delete;
  TlsFront& operator=(const TlsFront&) = delete;

  // Whether it runs; if not, a package is missing, and the output says what happened.
  [[nodiscard]] bool isRunning() const { return isRunning_; }
  [[nodiscard]] std::string httpTwo() const;
  [[nodiscard]] std::string httpOne() const;

 private:
  void makeCertificate() const;
  // Starts one that speaks `protocol`, and answers its port.
  int start(const PingServer& server, const std::string& protocol);
  [[nodiscard]] std::string file(const std::string& name) const { return folder_ + "/" + name; }

  const std::string folder_;
  std::vector<GSubprocess*> processes_;
  bool isRunning_ = false;
  int portTwo_ = 0;
  int portOne_ = 0;
};

}  // namespace tavo::benchmarks
