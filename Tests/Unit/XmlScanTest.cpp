#include <random>

#include "External/TBXML/MarkupScan.h"
#include "External/TBXML/NameMatch.h"
#include "External/TBXML/NameScan.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

std::vector<std::uint64_t> scanned(const NamedMarkupScan& form, const std::string& text) {
  std::vector<std::uint64_t> bits(text.size() / markupBlock);
  form.scan(text.data(), bits.size(), bits.data());
  return bits;
}

// What the scans have to find, in the plainest words.
std::vector<std::uint64_t> expected(const std::string& text) {
  std::vector<std::uint64_t> bits(text.size() / markupBlock);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (std::string_view{"<]\"'"}.find(text[at]) != std::string_view::npos) {
      bits[at / markupBlock] |= std::uint64_t{1} << at % markupBlock;
    }
  }
  return bits;
}

TEST(XmlScanTest, everyFormTellsEveryByteAtEveryPlace) {
  const MarkupScans& scans = availableMarkupScans();
  ASSERT_EQ(scans.forms[0].name, "portable");
  for (std::size_t form = 0; form < scans.count; ++form) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string text(2 * markupBlock, static_cast<char>(byte));
      EXPECT_EQ(scanned(scans.forms[form], text), expected(text))
          << scans.forms[form].name << " byte " << byte;
    }
    for (std::size_t place = 0; place < markupBlock; ++place) {
      std::string text(markupBlock, 'x');
      text[place] = '<';
      EXPECT_EQ(scanned(scans.forms[form], text), expected(text)) << scans.forms[form].name;
    }
  }
}

// Bytes that stand for markup with some change of a bit, so that every neighbour meets every other.
TEST(XmlScanTest, everyFormTellsTheSameOfRandomTexts) {
  const MarkupScans& scans = availableMarkupScans();
  std::mt19937 random{20};
  for (int turn = 0; turn < 300; ++turn) {
    std::string text(4 * markupBlock, '\0');
    for (char& c : text) {
      const auto draw = static_cast<std::uint32_t>(random());
      c = static_cast<char>("<]\"'"[draw % 4] ^ (draw & 0x100 ? 0 : 1 << (draw >> 16) % 8));
    }
    for (std::size_t form = 0; form < scans.count; ++form) {
      ASSERT_EQ(scanned(scans.forms[form], text), expected(text)) << scans.forms[form].name;
    }
  }
}

TEST(XmlScanTest, namesEndAtTheSamePlaceInEveryForm) {
  for (int end = 0; end < 256; ++end) {
    for (std::size_t length = 0; length < 40; ++length) {
      std::string text(length, 'n');
      text += static_cast<char>(end);
      text += std::string{"nn>"} + std::string(nameScanReach, '\0');
      for (const char stop : {'/', '=', '>'}) {
        const std::string_view ends{text};
        std::size_t plain = 0;
        while (!isBlankInTag(ends[plain]) && ends[plain] != '>' && ends[plain] != stop) ++plain;
        ASSERT_EQ(nameLength(text.data(), stop), plain) << end << " " << length << " " << stop;
        ASSERT_EQ(nameLengthPortable(text.data(), stop), plain) << end << " " << length << stop;
      }
    }
  }
}

TEST(XmlScanTest, namesDifferInAnyByteOrInLength) {
  for (std::size_t length = 0; length < 40; ++length) {
    const std::string name(length, 'n');
    EXPECT_TRUE(isSameName(name, std::string(name))) << length;
    EXPECT_FALSE(isSameName(name, name + "n")) << length;
    for (std::size_t place = 0; place < length; ++place) {
      std::string other = name;
      other[place] = 'x';
      EXPECT_FALSE(isSameName(name, other)) << length << " " << place;
    }
  }
}

}  // namespace
}  // namespace tavo::test
