#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "Gtk/GPtr.h"

namespace tavo::gtk {

// Reads the decoded body of an answer straight into the text that is handed out. It takes what has
// arrived without a turn of the loop for every piece, and stops at its limit whatever a compressed
// body would become.
class HttpBodyReader {
 public:
  enum class State {
    waiting,   // more is to come; see `whenReadable`
    complete,  // `takeBody` has it
    tooLarge,
    failed,  // `failure` says why
  };

  // `limit`: the most decoded bytes, 0 for no bound. `expected`: how many are announced, 0 for not
  // known; a hint only.
  HttpBodyReader(GPtr<GInputStream> stream, std::size_t limit, std::size_t expected);
  ~HttpBodyReader();
  HttpBodyReader(const HttpBodyReader&) = delete;
  HttpBodyReader& operator=(const HttpBodyReader&) = delete;

  // Takes what is there, up to a fair share of one turn of the loop. Never waits.
  [[nodiscard]] State readAvailable();

  // Calls `readable` on the main context once more can be read, or the stream has failed. Replaces
  // an earlier wish; none comes after this reader has gone.
  void whenReadable(std::function<void()> readable);

  [[nodiscard]] std::string takeBody();
  [[nodiscard]] const GFailure& failure() const { return failure_; }

 private:
  [[nodiscard]] State readOnce();
  [[nodiscard]] std::size_t roomForNextRead() const;

  GPtr<GInputStream> stream_;
  const std::size_t limit_;
  const std::size_t expected_;  // a bound on what the server's word is taken for
  std::string body_;
  std::size_t filled_ = 0;  // the rest of `body_` is room for the next read
  bool endsTurn_ = false;   // the turn's share is used up while more is there
  GFailure failure_;
  GSourcePtr wait_;
};

}  // namespace tavo::gtk
