#pragma once

#include <atomic>
#include <string>

#include "Gtk/GPtr.h"
#include "Support/TemporaryFolder.h"

namespace tavo::test {

// Makes a certificate for 127.0.0.1, signed by itself, and its key. Answers the key's file; the
// certificate is the one with ".cert" behind.
std::string makeCertificate(const TemporaryFolder& folder);

// An HTTPS server of this machine, with a certificate made for it a moment ago and signed by nobody
// else. Whatever it is asked for it would answer with a text.
class TlsServer {
 public:
  TlsServer();
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  [[nodiscard]] std::string url(const std::string& path) const;
  // Who began to talk to it, and who went so far as to ask for something.
  [[nodiscard]] int connections() const { return connections_; }
  [[nodiscard]] int requests() const { return requests_; }

 private:
  static gboolean onConnection(GThreadedSocketService*, GSocketConnection* connection, GObject*,
                               TlsServer* self);

  TemporaryFolder folder_;
  gtk::GPtr<GTlsCertificate> certificate_;
  gtk::GPtr<GSocketService> service_;
  unsigned port_ = 0;
  std::atomic<int> connections_ = 0;
  std::atomic<int> requests_ = 0;
};

}  // namespace tavo::test
