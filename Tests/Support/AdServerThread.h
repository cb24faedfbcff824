#pragma once

#include <filesystem>
#include <future>
#include <string>
#include <thread>

#include "AdServer/AdServer.h"
#include "Gtk/GPtr.h"

namespace tavo::test {

// A real server to ask instead, and where its answers are written down.
struct Forwarding {
  std::string target{};
  std::filesystem::path into{};
};

// An ad server on a thread and a main context of its own, so that a test may block.
class AdServerThread {
 public:
  explicit AdServerThread(const std::filesystem::path& campaignFolder,
                          const Forwarding& forwarding = {});
  ~AdServerThread();  // returns when the server is gone
  AdServerThread(const AdServerThread&) = delete;
  AdServerThread& operator=(const AdServerThread&) = delete;

  [[nodiscard]] std::string url(const std::string& path) const { return server_->baseUrl() + path; }
  [[nodiscard]] adserver::RequestRecord& record() { return server_->record(); }

 private:
  void run(const std::filesystem::path& campaignFolder, const Forwarding& forwarding,
           std::promise<adserver::AdServer*> started);

  gtk::GOwned<GMainContext, &g_main_context_unref> context_{g_main_context_new()};
  gtk::GOwned<GMainLoop, &g_main_loop_unref> loop_{g_main_loop_new(context_.get(), FALSE)};
  std::thread thread_;
  adserver::AdServer* server_ = nullptr;  // lives on the thread's stack until the loop ends
};

}  // namespace tavo::test
