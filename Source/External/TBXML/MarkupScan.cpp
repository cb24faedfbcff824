#include "External/TBXML/MarkupScan.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tavo {
namespace {

void scanPortable(const char* text, std::size_t blocks, std::uint64_t* bits) {
  for (std::size_t block = 0; block < blocks; ++block) {
    std::uint64_t word = 0;
    for (std::size_t at = 0; at < markupBlock; ++at) {
      const char c = text[block * markupBlock + at];
      word |= static_cast<std::uint64_t>((c == '<') | (c == ']') | (c == '"') | (c == '\'')) << at;
    }
    bits[block] = word;
  }
}

#if defined(__x86_64__)

std::uint64_t bitsOf16(const char* text) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const __m128i brackets = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')),
                                        _mm_cmpeq_epi8(bytes, _mm_set1_epi8(']')));
  const __m128i quotes = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')),
                                      _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\'')));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_or_si128(brackets, quotes)));
}

void scanSse2(const char* text, std::size_t blocks, std::uint64_t* bits) {
  for (std::size_t block = 0; block < blocks; ++block, text += markupBlock) {
    bits[block] = bitsOf16(text) | bitsOf16(text + 16) << 16 | bitsOf16(text + 32) << 32 |
                  bitsOf16(text + 48) << 48;
  }
}

// One look-up by the low half of each byte finds all four characters: their low halves differ.
[[gnu::target("avx2")]] std::uint64_t bitsOf32(const char* text) {
  const __m256i characters =
      _mm256_setr_epi8(1, 0, '"', 0, 0, 0, 0, '\'', 0, 0, 0, 0, '<', ']', 0, 0,  //
                       1, 0, '"', 0, 0, 0, 0, '\'', 0, 0, 0, 0, '<', ']', 0, 0);
  const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
  const __m256i found = _mm256_cmpeq_epi8(_mm256_shuffle_epi8(characters, bytes), bytes);
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(found));
}

[[gnu::target("avx2")]] void scanAvx2(const char* text, std::size_t blocks, std::uint64_t* bits) {
  for (std::size_t block = 0; block < blocks; ++block, text += markupBlock) {
    bits[block] = bitsOf32(text) | bitsOf32(text + 32) << 32;
  }
}

MarkupScans findMarkupScans() {
  MarkupScans scans{{{"portable", scanPortable}, {"SSE2", scanSse2}}, 2};
  if (__builtin_cpu_supports("avx2")) {
    scans.forms[scans.count++] = {"AVX2", scanAvx2};
  }
  return scans;
}

#else

MarkupScans findMarkupScans() { return {{{"portable", scanPortable}}, 1}; }

#endif

}  // namespace

const MarkupScans& availableMarkupScans() {
  static const MarkupScans scans = findMarkupScans();
  return scans;
}

}  // namespace tavo
