#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Gtk/GPtr.h"

namespace tavo::fuzz {

// A server on a thread of its own that answers every request with the same film, in parts where it
// is asked for them.
class FilmServer {
 public:
  FilmServer();
  ~FilmServer();
  FilmServer(const FilmServer&) = delete;
  FilmServer& operator=(const FilmServer&) = delete;

  // The film from now on. Any thread.
  void show(const std::uint8_t* data, std::size_t size);
  // A new address each time: nobody may know it already.
  [[nodiscard]] std::string url();

 private:
  std::mutex mutex_;
  std::string film_;  // guarded
  unsigned port_ = 0;
  unsigned films_ = 0;
  gtk::GOwned<GMainContext, &g_main_context_unref> context_{g_main_context_new()};
  gtk::GOwned<GMainLoop, &g_main_loop_unref> loop_{g_main_loop_new(context_.get(), FALSE)};
  std::thread thread_;
};

}  // namespace tavo::fuzz
