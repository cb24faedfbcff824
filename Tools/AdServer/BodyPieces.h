#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <string>

#include "Gtk/GPtr.h"

namespace tavo::adserver {

// A body piece by piece: its text, then blanks up to a length, all of it compressed where wanted. A
// body of a gigabyte takes no more memory than a piece.
class BodyPieces {
 public:
  BodyPieces(std::string body, std::uint64_t padToBytes, bool gzip);

  // The next piece of at most `most` bytes before compression; empty at the end, and only there.
  [[nodiscard]] std::string next(std::size_t most);

  // Before compression.
  [[nodiscard]] std::uint64_t size() const { return size_; }

 private:
  [[nodiscard]] std::string plain(std::size_t most);
  [[nodiscard]] std::string compressed(const std::string& piece);

  std::string body_;
  std::uint64_t size_;
  std::uint64_t given_ = 0;
  bool ended_ = false;
  gtk::GPtr<GZlibCompressor> compressor_;
};

}  // namespace tavo::adserver
