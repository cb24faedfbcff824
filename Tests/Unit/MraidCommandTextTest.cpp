#include <limits>

#include "AdController/AdGenerator/MraidCommandText.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

TEST(MraidCommandText, ReadsQueries) {
  const std::vector<std::pair<std::string, MraidParameters>> cases{
      {"", {}},
      {"a=1", {{"a", "1"}}},
      {"a=1&b=2", {{"a", "1"}, {"b", "2"}}},
      {"a=b=c&a=d", {{"a", "d"}}},
      {"a=b=c", {{"a", "c"}}},
      {"flag", {{"flag", "flag"}}},
      {"fl%20ag", {{"fl%20ag", "fl ag"}}},
      {"a%3Db=%3D%26", {{"a%3Db", "=&"}}},
      {"a=&=b", {{"a", ""}, {"", "b"}}},
      {"a=1&", {{"", ""}, {"a", "1"}}},
      {"a=x+y", {{"a", "x+y"}}},
      {"a=%zz%4", {{"a", "%zz%4"}}},
      {"a=%C3%A4", {{"a", "\xC3\xA4"}}},
      {"a=%00", {{"a", "\xEF\xBF\xBD"}}},
      {"a=%FF%41",
       {{"a",
         "\xEF\xBF\xBD"
         "A"}}},
  };
  for (const auto& [query, expected] : cases) {
    EXPECT_EQ(dictionaryFromQueryString(query), expected) << query;
  }
}

TEST(MraidCommandText, ReadsCommands) {
  struct {
    std::string text;
    MraidCommand expected;
  } const cases[]{
      {"mraid://close", {"close", {}}},
      {"mraid://storePicture?url=http%3A%2F%2Fa%2Fb", {"storePicture", {{"url", "http://a/b"}}}},
      {"mraid://open?url=http://a/b?c=d&e=f", {"open", {{"url", "d"}, {"e", "f"}}}},
      {"mraid://open?url={a}|\"b\"", {"open", {{"url", "{a}|\"b\""}}}},
      {"mraid://open?url=100%", {"open", {{"url", "100%"}}}},
      {"mraid://x');alert(1);('", {"x');alert(1);('", {}}},
      {"mraid://", {"", {}}},
      {"mraid:close", {"", {}}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(mraidCommandFromUrl(Url::fromText(text)), expected) << text;
  }
}

TEST(MraidCommandText, EscapesTheBodyOfATextMessage) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"sms:123&body=hi there", "sms:123&body=hi%20there"},
      {"sms:123&body=!*'();:@&=+$,/?%#[]",
       "sms:123&body=%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D"},
      {"sms:123&body=a-b_c.d~e\xC3\xA4", "sms:123&body=a-b_c.d~e%C3%A4"},
      {"sms:123&body=a&body=b", "sms:123&body=a%26body%3Db"},
      {"sms:123&body=", "sms:123&body="},
      {"http://a/?x=sms:&body=a b", "http://a/?x=sms:&body=a%20b"},
      {"sms:123?body=a b", "sms:123?body=a b"},
      {"mailto:a&body=a b", "mailto:a&body=a b"},
      {"SMS:123&body=a b", "SMS:123&body=a b"},
      {"", ""},
  };
  for (const auto& [url, expected] : cases) EXPECT_EQ(urlWithEscapedSmsBody(url), expected);
}

TEST(MraidCommandText, NamesTheSize) {
  const std::vector<std::pair<Size, std::string>> cases{
      {{320, 460.5}, "sizeChange:width=320.000000,height=460.500000"},
      {{-0.25, std::numeric_limits<double>::quiet_NaN()},
       "sizeChange:width=-0.250000,height=0.000000"},
      {{1e20, 0}, "sizeChange:width=100000000000000000000.000000,height=0.000000"},
  };
  for (const auto& [size, expected] : cases) EXPECT_EQ(sizeChangeEventName(size), expected);
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(sizeChangeEventName({infinity, -infinity}).find("inf"), std::string::npos);
}

}  // namespace
}  // namespace tavo::test
