#include "AdServer/BodyPieces.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavo::adserver {

BodyPieces::BodyPieces(std::string body, std::uint64_t padToBytes, bool gzip)
    : body_{std::move(body)}, size_{std::max<std::uint64_t>(body_.size(), padToBytes)} {
  if (!gzip) return;
  compressor_ =
      gtk::GPtr<GZlibCompressor>::adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, -1));
}

std::string BodyPieces::next(std::size_t most) {
  if (!compressor_) return plain(most);
  std::string piece;
  while (piece.empty() && !ended_) piece = compressed(plain(most));
  return piece;
}

std::string BodyPieces::plain(std::size_t most) {
  const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(most, size_ - given_));
  std::string piece;
  if (given_ < body_.size()) piece = body_.substr(static_cast<std::size_t>(given_), length);
  piece.resize(length, ' ');
  given_ += length;
  return piece;
}

std::string BodyPieces::compressed(const std::string& piece) {
  const auto flags = piece.empty() ? G_CONVERTER_INPUT_AT_END : G_CONVERTER_NO_FLAGS;
  std::string out;
  std::array<char, 65'536> room{};
  std::size_t taken = 0;
  auto result = G_CONVERTER_CONVERTED;
  while (result == G_CONVERTER_CONVERTED && (taken < piece.size() || piece.empty())) {
    gsize read = 0;
    gsize written = 0;
    result = g_converter_convert(G_CONVERTER(compressor_.get()), piece.data() + taken,
                                 piece.size() - taken, room.data(), room.size(), flags, &read,
                                 &written, nullptr);
    out.append(room.data(), written);
    taken += read;
  }
  ended_ = result != G_CONVERTER_CONVERTED;
  return out;
}

}  // namespace tavo::adserver
