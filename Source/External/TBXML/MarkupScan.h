#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tavo {

inline constexpr std::size_t markupBlock = 64;

// Tells where the reader has to look: sets one word per block of 64 bytes, whose bit n says whether
// byte n of the block is one of '<', ']', '"' and '\''. The other characters that mean something in
// a tag stand next to one of these or right behind a name.
//
// This is one function in several instruction sets; every form gives the same words.
using MarkupScan = void (*)(const char* text, std::size_t blocks, std::uint64_t* bits);

struct NamedMarkupScan {
  std::string_view name;
  MarkupScan scan = nullptr;
};

// The forms that this processor can run, slowest first; the portable one is always there.
struct MarkupScans {
  NamedMarkupScan forms[3];
  std::size_t count = 0;

  [[nodiscard]] MarkupScan fastest() const { return forms[count - 1].scan; }
};
[[nodiscard]] const MarkupScans& availableMarkupScans();

}  // namespace tavo
