#pragma once

#include <libsoup/soup.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "AdServer/Reply.h"
#include "Gtk/GPtr.h"

namespace tavo::adserver {

// Puts this server in front of a real one: asks it what was asked here, and writes each answer down
// as a campaign, so that a folder of them plays again without it. Used on one thread only.
class Forwarder {
 public:
  // `target` is "http[s]://host[:port]", perhaps with a path before every request's own. Answers
  // become folders below `into`. Throws std::runtime_error for another kind of address, and for a
  // folder that cannot be made.
  Forwarder(const std::string& target, std::filesystem::path into, std::string ownBaseUrl);
  ~Forwarder();
  Forwarder(const Forwarder&) = delete;
  Forwarder& operator=(const Forwarder&) = delete;

  // Asks for the same path, query and headers; `then` gets the answer, or one that says what went
  // wrong, unless this goes first. `name` is the campaign that the answer becomes.
  void ask(SoupServerMessage* message, const std::string& name, std::function<void(Reply)> then);

 private:
  struct Exchange;

  void received(Exchange& exchange);
  void failed(Exchange& exchange, const std::string& why);
  void readOn(Exchange& exchange);
  void record(const Exchange& exchange, const Reply& reply);
  [[nodiscard]] std::string withOwnAddress(std::string text, const std::string& own) const;
  [[nodiscard]] std::filesystem::path freeFolder(const std::string& name) const;

  std::string target_;
  std::string targetHost_;  // with its port
  std::filesystem::path into_;
  std::string own_;
  gtk::GPtr<SoupSession> session_;
  gtk::GPtr<GCancellable> end_;
  std::map<std::string, std::size_t> recorded_;  // hash of the answer, by what was asked
};

}  // namespace tavo::adserver
