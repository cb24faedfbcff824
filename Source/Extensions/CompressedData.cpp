#include "Extensions/CompressedData.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>

namespace tavo {
namespace {

constexpr int detectHeader = 32;  // added to the window bits: zlib tells gzip and zlib apart
constexpr int gzipHeader = 16;
constexpr std::size_t pieceSize = std::size_t{64} * 1024;

// zlib counts in 32 bits, so long input is handed over in pieces.
void feed(z_stream& stream, std::string_view& input) {
  if (stream.avail_in != 0) return;
  const std::size_t size = std::min(input.size(), std::size_t{1} << 30);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
  stream.avail_in = static_cast<uInt>(size);
  input.remove_prefix(size);
}

bool isGzip(std::string_view data) { return data.starts_with("\x1f\x8b"); }

// The first `largest` + 1 bytes, so that the caller can tell a file that is too large.
std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t largest) {
  std::error_code error;
  std::ifstream file{path, std::ios::binary};
  if (!std::filesystem::is_regular_file(path, error) || !file) return std::nullopt;
  std::string bytes;
  constexpr std::size_t readSize = 16384;
  std::array<char, readSize> piece{};
  while (bytes.size() <= largest && file) {
    file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    bytes.append(piece.data(), static_cast<std::size_t>(file.gcount()));
  }
  return file.bad() ? std::nullopt : std::optional{std::move(bytes)};
}

}  // namespace

std::optional<std::string> gzipInflate(std::string_view data, std::size_t largest) {
  z_stream stream{};
  if (inflateInit2(&stream, MAX_WBITS + detectHeader) != Z_OK) return std::nullopt;
  const std::unique_ptr<z_stream, int (*)(z_stream*)> guard{&stream, inflateEnd};
  const auto piece = std::make_unique_for_overwrite<char[]>(pieceSize);
  std::string content;
  int state = Z_OK;
  while (state == Z_OK && content.size() <= largest) {
    feed(stream, data);
    stream.next_out = reinterpret_cast<Bytef*>(piece.get());
    stream.avail_out = pieceSize;
    state = inflate(&stream, Z_NO_FLUSH);
    content.append(piece.get(), pieceSize - stream.avail_out);
  }
  return state == Z_STREAM_END && content.size() <= largest ? std::optional{std::move(content)}
                                                            : std::nullopt;
}

std::string gzipDeflate(std::string_view data) {
  z_stream stream{};
  constexpr int memoryLevel = 8;
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + gzipHeader, memoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    return {};
  }
  const std::unique_ptr<z_stream, int (*)(z_stream*)> guard{&stream, deflateEnd};
  const auto piece = std::make_unique_for_overwrite<char[]>(pieceSize);
  std::string compressed;
  int state = Z_OK;
  while (state == Z_OK) {
    feed(stream, data);
    stream.next_out = reinterpret_cast<Bytef*>(piece.get());
    stream.avail_out = pieceSize;
    state = deflate(&stream, data.empty() ? Z_FINISH : Z_NO_FLUSH);
    compressed.append(piece.get(), pieceSize - stream.avail_out);
  }
  return compressed;
}

std::optional<std::string> dataWithUncompressedContentsOfFile(const std::filesystem::path& path,
                                                              std::size_t largest) {
  std::optional<std::string> bytes = readFile(path, largest);
  if (!bytes || bytes->size() > largest) return std::nullopt;
  return isGzip(*bytes) ? gzipInflate(*bytes, largest) : std::move(bytes);
}

}  // namespace tavo
