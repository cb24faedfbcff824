// All forms are loops over arithmetic; at -O2 GCC unrolls none of them.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("O3")
#endif

#include "External/TBXML/MarkupScan.h"

#include "External/TBXML/EightBytes.h"

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__AARCH64EL__)
#include <arm_neon.h>
#endif

namespace tavo {
namespace {

std::uint64_t bitsOf8(const char* text) {
  const EightBytes bytes{text};
  return (bytes.where('<') | bytes.where(']') | bytes.where('"') | bytes.where('\'')).bits();
}

void scanPortable(const char* text, std::size_t blocks, std::uint64_t* bits) {
  for (std::size_t block = 0; block < blocks; ++block, text += markupBlock) {
    std::uint64_t word = 0;
    for (unsigned at = 0; at < markupBlock; at += 8) {
      word |= bitsOf8(text + at) << at;
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

#elif defined(__AARCH64EL__)

// All ones in each byte that is markup: found by the low half, which differs between the four.
uint8x16_t found16(const char* text) {
  constexpr std::uint8_t characters[16] = {1, 0, '"', 0, 0, 0, 0, '\'', 0, 0, 0, 0, '<', ']', 0, 0};
  const uint8x16_t bytes = vld1q_u8(reinterpret_cast<const std::uint8_t*>(text));
  const uint8x16_t low = vandq_u8(bytes, vdupq_n_u8(0x0f));
  return vceqq_u8(vqtbl1q_u8(vld1q_u8(characters), low), bytes);
}

// Each byte keeps the bit of its place among eight; adding neighbours three times makes of 64 bytes
// eight, one bit for each.
void scanNeon(const char* text, std::size_t blocks, std::uint64_t* bits) {
  const uint8x16_t place = vreinterpretq_u8_u64(vdupq_n_u64(0x8040201008040201));
  for (std::size_t block = 0; block < blocks; ++block, text += markupBlock) {
    const uint8x16_t first = vpaddq_u8(vandq_u8(found16(text), place),  //
                                       vandq_u8(found16(text + 16), place));
    const uint8x16_t second =
        vpaddq_u8(vandq_u8(found16(text + 32), place), vandq_u8(found16(text + 48), place));
    const uint8x16_t both = vpaddq_u8(first, second);
    bits[block] = vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(both, both)), 0);
  }
}

// Every processor of this kind has these instructions.
MarkupScans findMarkupScans() { return {{{"portable", scanPortable}, {"NEON", scanNeon}}, 2}; }

#else

MarkupScans findMarkupScans() { return {{{"portable", scanPortable}}, 1}; }

#endif

}  // namespace

const MarkupScans& availableMarkupScans() {
  static const MarkupScans scans = findMarkupScans();
  return scans;
}

}  // namespace tavo
