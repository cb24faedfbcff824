#include <cmath>
#include <limits>

#include "Support/Testing.h"
#include "Utilities/NumberText.h"

namespace tavo::test {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

TEST(NumberText, IsReadFromItsBeginning) {
  using Row = std::tuple<std::string_view, double, std::int64_t>;
  constexpr Row rows[] = {
      {"", 0, 0},
      {"px", 0, 0},
      {" 12px", 12, 12},
      {"+7", 7, 7},
      {"-7.9", -7.9, -7},
      {"+-7", 0, 0},
      {".5", 0.5, 0},
      {"-", 0, 0},
      {"1e3", 1000, 1},
      {"inf", 0, 0},
      {"-nan", 0, 0},
      {"0x10", 0, 0},
      {"1e999", 0, 1},
      {"1,5", 1, 1},
      {"9223372036854775808", 9223372036854775808.0, most},
      {"-9e99", -9e99, -9},
      {"-9999999999999999999", -1e19, least},
  };
  for (const auto& [text, number, integer] : rows) {
    EXPECT_EQ(leadingNumber(text), number) << text;
    EXPECT_EQ(leadingInteger(text), integer) << text;
  }
  EXPECT_EQ(leadingWholeNumber("-9999999999"), std::numeric_limits<int>::min());
  EXPECT_EQ(leadingFloat("1e60"), std::numeric_limits<float>::max());
}

TEST(NumberText, IsCutWithoutEverWrapping) {
  EXPECT_EQ(truncated(-1.9), -1);
  EXPECT_EQ(truncated(1e300), most);
  EXPECT_EQ(truncated(-INFINITY), least);
  EXPECT_EQ(truncated(NAN), 0);
  EXPECT_EQ(integerPart(3e9), std::numeric_limits<int>::max());
}

TEST(NumberText, IsWrittenWithTheFewestDigits) {
  EXPECT_EQ(numberText(0.5), "0.5");
  EXPECT_EQ(numberText(0.0001), "0.0001");
  EXPECT_EQ(numberText(0.00001), "1e-05");
  EXPECT_EQ(numberText(1e16), "1e+16");
  EXPECT_EQ(plainNumberText(1e16), "10000000000000000");
}

}  // namespace
}  // namespace tavo::test
