#pragma once

#include <cstddef>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tavo {

// Gzip data and files that may be gzip compressed. Any thread.

// The content of gzip or zlib data. None when the data is damaged, cut short, or grows beyond
// `largest` bytes, which a few hundred bytes can make it do.
[[nodiscard]] std::optional<std::string> gzipInflate(
    std::string_view data, std::size_t largest = std::numeric_limits<std::size_t>::max());

// `data` compressed, with a gzip header.
[[nodiscard]] std::string gzipDeflate(std::string_view data);

// The largest file, before and after it is inflated, that dataWithUncompressedContentsOfFile reads
// unless told otherwise.
inline constexpr std::size_t largestResourceFile = std::size_t{64} * 1024 * 1024;

// The file's bytes, inflated when they are gzip data. None when the file cannot be read, is damaged
// gzip data or is larger than `largest`.
[[nodiscard]] std::optional<std::string> dataWithUncompressedContentsOfFile(
    const std::filesystem::path& path, std::size_t largest = largestResourceFile);

}  // namespace tavo
