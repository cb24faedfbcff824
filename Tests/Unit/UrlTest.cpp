#include <tavo/Url.h>

#include "Support/Testing.h"

namespace tavo::test {
namespace {

struct PieceCase {
  std::string_view text;
  std::string_view scheme;
  std::string_view host;
  std::string_view path;
  std::string_view query;
  std::string_view fragment;
};

constexpr PieceCase pieceCases[] = {
    {"http://h.test/a/b?q=1#f", "http", "h.test", "/a/b", "q=1", "f"},
    {"HTTPS://user:pw@H.Test:80?q", "HTTPS", "H.Test", "", "q", ""},
    {"http://[::1]:80/a;p=1", "http", "::1", "/a;p=1", "", ""},
    {"mraid://createCalendarEvent?x=1", "mraid", "createCalendarEvent", "", "x=1", ""},
    {"mailto:a@b.test?subject=x", "mailto", "", "a@b.test", "subject=x", ""},
    {"tel:+123", "tel", "", "+123", "", ""},
    {"(null)", "", "", "(null)", "", ""},
    {"/path?a=http://x.test/", "", "", "/path", "a=http://x.test/", ""},
    {"a/b:c", "", "", "a/b:c", "", ""},
    {"//h.test/p", "", "h.test", "/p", "", ""},
    {"http://", "http", "", "", "", ""},
    {"http:///p", "http", "", "/p", "", ""},
    {"h:?#", "h", "", "", "", ""},
    {"1a://h", "", "", "1a://h", "", ""},
    {":", "", "", ":", "", ""},
};

TEST(Url, IsSplitIntoPieces) {
  for (const auto& row : pieceCases) {
    for (const Url& url : {Url::parse(std::string{row.text}), Url::fromText(row.text),
                           Url::fromText(std::string{row.text})}) {
      EXPECT_EQ(url.text(), row.text);
      EXPECT_EQ(url.scheme(), row.scheme) << row.text;
      EXPECT_EQ(url.host(), row.host) << row.text;
      EXPECT_EQ(url.path(), row.path) << row.text;
      EXPECT_EQ(url.query(), row.query) << row.text;
      EXPECT_EQ(url.fragment(), row.fragment) << row.text;
    }
  }
}

struct EscapeCase {
  std::string_view raw;
  std::string_view escaped;
};

constexpr EscapeCase escapeCases[] = {
    {"", ""},
    {" \t\r\n", ""},
    {"  http://h.test/a b\n", "http://h.test/a%20b"},
    {"http://h.test/12345678 12345678|", "http://h.test/12345678%2012345678%7C"},
    {"http://h.test/%41%zz%4", "http://h.test/%41%25zz%254"},
    {"http://h.test/\xC3\xA9", "http://h.test/%C3%A9"},
    {"http://h.test/a[1]", "http://h.test/a%5B1%5D"},
    {"http://[::1]/a[1]", "http://[::1]/a%5B1%5D"},
    {"http://h.te\nst/", "http://h.te%0Ast/"},
    {"a\x01\x7F<>\"\\^`{|}b", "a%01%7F%3C%3E%22%5C%5E%60%7B%7C%7Db"},
};

TEST(Url, IsEscapedWhenMadeFromText) {
  for (const auto& row : escapeCases) {
    EXPECT_EQ(Url::fromText(row.raw).text(), row.escaped) << row.raw;
    EXPECT_EQ(Url::fromText(std::string{row.raw}).text(), row.escaped) << row.raw;
    EXPECT_EQ(Url::fromText(row.escaped).text(), row.escaped) << row.raw;  // not twice
    EXPECT_EQ(Url::parse(std::string{row.raw}).empty(), row.raw != row.escaped || row.raw.empty())
        << row.raw;
  }
  EXPECT_EQ(Url::fromText("http://h.test/literal").text(), "http://h.test/literal");
}

TEST(Url, HasABound) {
  EXPECT_FALSE(Url::fromText(std::string(16U << 20U, 'a')).empty());
  EXPECT_TRUE(Url::fromText(std::string((16U << 20U) + 1, 'a')).empty());
  EXPECT_TRUE(Url::parse(std::string((16U << 20U) + 1, 'a')).empty());
  EXPECT_TRUE(Url::fromText(std::string(6U << 20U, ' ') + "x" + std::string(6U << 20U, '\x01'))
                  .empty());  // by what the escapes add
}

}  // namespace
}  // namespace tavo::test
