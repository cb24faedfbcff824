#pragma once

#include <bit>
#include <cstddef>

#include "External/TBXML/EightBytes.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tavo {

// Inside a tag every control character counts as a blank, as the space does.
[[nodiscard]] inline bool isBlankInTag(char c) { return static_cast<unsigned char>(c) <= ' '; }

// The length of the name that starts at `text`: it runs to the first blank, '>' or `stop`. The text
// must hold such a character and be readable for nameScanReach bytes after it.
inline constexpr std::size_t nameScanReach = 16;

[[nodiscard]] inline std::size_t nameLengthPortable(const char* text, char stop) {
  for (std::size_t length = 0;; length += 8) {
    const EightBytes bytes{text + length};
    const BytePlaces ends = bytes.whereAtMost(' ') | bytes.where('>') | bytes.where(stop);
    if (ends.any()) return length + ends.first();
  }
}

#if defined(__SSE2__)
// Names are short: the first 16 bytes nearly always hold the end, so there is no loop whose last
// turn the processor would have to guess.
[[nodiscard]] inline std::size_t nameLength(const char* text, char stop) {
  for (std::size_t length = 0;; length += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + length));
    const __m128i blank = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(' ')), bytes);
    const __m128i stops = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('>')),
                                       _mm_cmpeq_epi8(bytes, _mm_set1_epi8(stop)));
    const auto ends = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(blank, stops)));
    if (ends != 0) [[likely]]
      return length + static_cast<std::size_t>(std::countr_zero(ends));
  }
}
#else
[[nodiscard]] inline std::size_t nameLength(const char* text, char stop) {
  return nameLengthPortable(text, stop);
}
#endif

}  // namespace tavo
