#include <tavo/XURLBuilder.h>

#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

constexpr std::string_view prefix = "http://ads.test/Halvern/ads/spoolwire_dx.ads/sdk/page/@Top";

class UrlBuilder : public test::TransportTest {
 protected:
  // What stands behind the position.
  static std::string query(std::string_view keywords, std::string_view queryString,
                           bool coppa = false) {
    XAdSlotConfiguration configuration;
    configuration.COPPAPermissions = coppa;
    const Url url =
        XURLBuilder::URLWithDomainName("ads.test/Halvern/ads/spoolwire_dx.ads", "sdk", "page",
                                       "Top", keywords, queryString, &configuration);
    EXPECT_TRUE(url.text().starts_with(prefix)) << url.text();
    return url.text().substr(std::min(prefix.size(), url.text().size()));
  }
};

struct QueryCase {
  std::string_view name;
  std::string_view keywords;
  std::string_view queryString;
  std::string_view plain;
  std::string_view coppa;
};

constexpr QueryCase queryCases[] = {
    {"nothing", "", "", "", ""},
    {"keywords alone", "a=1&b=2", "", "?a=1&b=2", "?a=1&b=2"},
    {"query alone", "", "a=1&b=2", "?a=1&b=2", "?a=1&b=2"},
    {"query that has its mark", "", "?a=1", "?a=1", "?a=1"},
    {"mark belongs to the first piece", "a=1", "?a=1", "?a=1&a=1", "?a=1&a=1"},
    {"merged", "a=1&b=2", "b=2&c=3", "?b=2&c=3&a=1", "?b=2&c=3&a=1"},
    {"every keyword is there", "b=2", "b=2", "?b=2&", "?b=2"},
    {"pieces compare as a whole", "b=22&B=2", "b=2", "?b=2&b=22&B=2", "?b=2&b=22&B=2"},
    {"repeated in the query", "", "x=1&y=2&x=1", "?y=2&x=1", "?y=2&x=1"},
    {"repeated among keywords", "k&m&k", "a", "?a&m&k", "?a&m&k"},
    {"repeated, dropped and added", "a&d", "a&b&a&c&b", "?c&d&a&b", "?c&d&a&b"},
    {"two kinds repeated, by first place", "", "b&a&a&b&c", "?c&b&a", "?c&b&a"},
    {"empty pieces are pieces", "", "a&&b&", "?a&b&", "?a&b"},
    {"separators only", "", "&&&", "", ""},
    {"an empty keyword is in an empty query", "a=1&", "", "?a=1", "?a=1"},
    {"geo override in the middle", "", "a=1&_TAVO_GEO_OVERRIDE_=x&b=2",
     "?a=1&_TAVO_GEO_OVERRIDE_=x&b=2", "?a=1&&b=2"},
    {"geo override at the ends", "", "_TAVO_GEO_OVERRIDE_=x&b=2", "?_TAVO_GEO_OVERRIDE_=x&b=2",
     "?b=2"},
    {"geo override alone", "", "_TAVO_GEO_OVERRIDE_", "?_TAVO_GEO_OVERRIDE_", ""},
    {"geo override inside a piece", "", "a_TAVO_GEO_OVERRIDE_=x&b", "?a_TAVO_GEO_OVERRIDE_=x&b",
     "?a&b"},
    {"geo override among keywords", "_TAVO_GEO_OVERRIDE_=x", "b", "?b&_TAVO_GEO_OVERRIDE_=x", "?b"},
    {"another geo value stays", "", "_TAVO_GEO_OVERRIDE_=x&_TAVO_GEO_OVERRIDE_=y",
     "?_TAVO_GEO_OVERRIDE_=x&_TAVO_GEO_OVERRIDE_=y", "?_TAVO_GEO_OVERRIDE_=y"},
    {"escapes", "", "q=a b\xC3\xA9|<\"&p=50%&r=%20", "?q=a%20b%C3%A9%7C%3C%22&p=50%25&r=%20",
     "?q=a%20b%C3%A9%7C%3C%22&p=50%25&r=%20"},
    {"a fragment would cut the request", "k=#1", "q=#a", "?q=%23a&k=%231", "?q=%23a&k=%231"},
    {"delimiters stay", "", "u=http://x.test:80/a,b;c?d=@e'f", "?u=http://x.test:80/a,b;c?d=@e'f",
     "?u=http://x.test:80/a,b;c?d=@e'f"},
    {"control characters and brackets", "", "a[0]=1\n2\x01", "?a%5B0%5D=1%0A2%01",
     "?a%5B0%5D=1%0A2%01"},
};

TEST_F(UrlBuilder, MergesKeywordsAndQuery) {
  for (const auto& row : queryCases) {
    EXPECT_EQ(query(row.keywords, row.queryString), row.plain) << row.name;
    EXPECT_EQ(query(row.keywords, row.queryString, true), row.coppa) << row.name << ", COPPA";
  }
}

// The removed text is also taken out of a longer value that begins with it.
TEST_F(UrlBuilder, QuirkGeoOverrideRemovesTheSameTextEverywhere) {
  EXPECT_EQ(query("", "_TAVO_GEO_OVERRIDE_=1&b&_TAVO_GEO_OVERRIDE_=12", true), "?b&2");
}

TEST_F(UrlBuilder, QuirkSeparatorStaysWhenNoKeywordIsLeft) {
  EXPECT_EQ(query("a=1&b=2", "b=2&c=3&a=1"), "?b=2&c=3&a=1&");
}

TEST_F(UrlBuilder, FormsTheAddress) {
  const auto url = [](std::string_view domain, std::string_view format, std::string_view position) {
    return XURLBuilder::URLWithDomainName(domain, format, "site/page", position, "", "", nullptr)
        .text();
  };
  EXPECT_EQ(url("ads.test/d", "sdk", "Bottom1"), "http://ads.test/d/sdk/site/page/@Bottom1");
  EXPECT_EQ(url("ads.test/d", "sdkl", "@Bottom1"), "http://ads.test/d/sdkl/site/page/@Bottom1");
  EXPECT_EQ(url("ads.test/d", "sdk", "Top,Left"), "http://ads.test/d/sdk/site/page/@Top,Left");
  EXPECT_EQ(url("ads.test/d", "sdk", "Top "), "http://ads.test/d/sdk/site/page/@Top");
  EXPECT_EQ(url("[::1]:80/d", "sdk", "a[1]"), "http://[::1]:80/d/sdk/site/page/@a%5B1%5D");
  EXPECT_EQ(url("", "sdk", ""), "http:///sdk/site/page/@");
}

TEST_F(UrlBuilder, IsEmptyForATextThatIsTooLongForAUrl) {
  const std::string huge(17U << 20U, 'a');
  EXPECT_TRUE(XURLBuilder::URLWithDomainName("h", "sdk", "p", "x", "", huge, nullptr).empty());
}

TEST_F(UrlBuilder, TakesAQueryOf64Kilobytes) {
  std::string pairs;
  while (pairs.size() < 64 * 1024) pairs += "k" + std::to_string(pairs.size()) + "=v&dup&";
  const std::string result = query("dup&new", pairs);
  EXPECT_EQ(result.find("dup"), result.size() - 3);  // one copy, at the end
  EXPECT_NE(result.find("&new&"), std::string::npos);
}

TEST_F(UrlBuilder, RemovesTheGeoOverrideInPlace) {
  std::string query = "a=1&_TAVO_GEO_OVERRIDE_=x&b=2";
  EXPECT_EQ(XURLBuilder::removeGeoOverrideFromQueryString(query), "a=1&&b=2");
  EXPECT_EQ(query, "a=1&&b=2");
  EXPECT_EQ(XURLBuilder::removeGeoOverrideFromQueryString(query), "a=1&&b=2");
}

TEST_F(UrlBuilder, FillsThePlaceholderTemplate) {
  std::string text = XURLBuilder::getPlaceholderURLString();
  EXPECT_EQ(text, "http[s]://[host_name]/[alias_url]/[data_format]/[site_page]/@[position_list]");
  EXPECT_EQ(&XURLBuilder::replaceOccurenceOfString("[HOST_name]", "h", text), &text);
  XURLBuilder::replaceOccurenceOfString("]", "[]", text);
  XURLBuilder::replaceOccurenceOfString("", "x", text);
  EXPECT_EQ(text, "http[s[]://h/[alias_url[]/[data_format[]/[site_page[]/@[position_list[]");
}

}  // namespace
}  // namespace tavo::test
