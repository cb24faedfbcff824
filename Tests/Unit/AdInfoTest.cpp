#include <array>

#include "AdController/ResponseParser/XJSONResponseParser.h"
#include "AdInfo/XAdInfo.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

constexpr std::array fields{&XAdInfo::impressionTrackingURL,
                            &XAdInfo::clickTrackingURL,
                            &XAdInfo::adHeight,
                            &XAdInfo::adWidth,
                            &XAdInfo::adType,
                            &XAdInfo::fileURL,
                            &XAdInfo::text,
                            &XAdInfo::extraHT,
                            &XAdInfo::extraTx,
                            &XAdInfo::targW,
                            &XAdInfo::accCampId,
                            &XAdInfo::creId,
                            &XAdInfo::advId,
                            &XAdInfo::cpm,
                            &XAdInfo::cpc,
                            &XAdInfo::cpa,
                            &XAdInfo::eCpm,
                            &XAdInfo::btSeg,
                            &XAdInfo::ref,
                            &XAdInfo::campKey,
                            &XAdInfo::exclCamp,
                            &XAdInfo::io,
                            &XAdInfo::adPosition};

class AdInfo : public test::TransportTest {
 protected:
  static XAdInfo read(const std::string& body) {
    const auto document = XJSONResponseParser::parseJSONResponseWithData(body);
    return XAdInfo{document ? &*document : nullptr};
  }

  // How many document fields have a text, and how many of these are "(null)".
  static std::pair<int, int> filled(const XAdInfo& info) {
    int present = 0;
    int null = 0;
    for (const auto field : fields) {
      present += (info.*field).has_value() ? 1 : 0;
      null += info.*field == "(null)" ? 1 : 0;
    }
    return {present, null};
  }
};

TEST_F(AdInfo, ReadsEveryField) {
  const XAdInfo info = read(R"({"Ad":[{"ImpUrl":"imp","ClkUrl":"clk","H":50,"W":320,
      "AdType":"text/html","FileUrl":"file","Text":"<b>\u00e9\n</b>","ExtraHT":"eht",
      "ExtraTx":"etx","TargW":"tw","AccCampId":"acc","CreId":"cre","AdvId":"adv","CPM":"cpm",
      "CPC":"cpc","CPA":"cpa","eCPM":"ecpm","BTSeg":"bt","Ref":"ref","CampKey":"ck",
      "ExclCamp":"ec","IO":"io","Pos":"Top"}]})");
  constexpr std::array expected{"imp", "clk", "50",   "320", "text/html", "file", "<b>\u00e9\n</b>",
                                "eht", "etx", "tw",   "acc", "cre",       "adv",  "cpm",
                                "cpc", "cpa", "ecpm", "bt",  "ref",       "ck",   "ec",
                                "io",  "Top"};
  for (std::size_t i = 0; i < fields.size(); ++i) EXPECT_EQ(info.*fields[i], expected[i]) << i;
  EXPECT_EQ(info.httpResponseCode, 0);
  EXPECT_EQ(info.responseContent, std::nullopt);
}

TEST_F(AdInfo, WritesNullForWhatIsMissing) {
  const XAdInfo info = read(R"({"Ad":[{"Text":"x","AdType":"text/html","Unknown":1}]})");
  EXPECT_EQ(info.adType, "text/html");
  EXPECT_EQ(info.text, "x");
  EXPECT_EQ(filled(info), std::pair(23, 21));
}

TEST_F(AdInfo, ReadsTheFirstAdWhateverTheOrderOfItsKeys) {
  const XAdInfo info =
      read(R"({"x":{"Ad":1},"Ad":[{"Pos":"p","IO":"i","ImpUrl":"u","Pos":"q"},{"IO":"second"}]})");
  EXPECT_EQ(info.impressionTrackingURL, "u");
  EXPECT_EQ(info.io, "i");
  EXPECT_EQ(info.adPosition, "q");  // of a key written twice the last one counts
}

TEST_F(AdInfo, IsEmptyWithoutAnAd) {
  for (const auto* body :
       {R"({"Ad":[]})", "{}", R"({"Ad":null})", R"({"Ad":{"Text":"x"}})", R"({"Ad":"x"})",
        R"({"Ad":[1]})", R"({"Ad":[[{"Text":"x"}]]})", R"({"ad":[{"Text":"x"}]})"}) {
    EXPECT_TRUE(XJSONResponseParser::parseJSONResponseWithData(body)) << body;
    EXPECT_EQ(filled(read(body)), std::pair(0, 0)) << body;
  }
}

TEST_F(AdInfo, RefusesWhatIsNotJson) {
  for (const std::string body :
       {"", " ", "<html>", "[{\"Ad\":[]}]", "1", "null", "{\"Ad\":[", "{\"Ad\":[]}x", "{'Ad':[]}",
        "{\"Ad\":[{\"Text\":\"\xC3\x28\"}]}", "{\"Ad\":[{\"Text\":\"\xFF\"}]}",
        "{\"Ad\":[{\"W\":01}]}", "{\"Ad\":[{\"W\":1e999}]}",
        "{\"Ad\":[{\"W\":0123456789012345678901}]}", "{\"Ad\":[],12345678901234567890:1}",
        "{\"Ad\":[],\"x\":\"\\u12\"}", "{\"Ad\":[{\"W\":NaN}]}",
        "{\"Ad\":[{\"W\":12345678901234567890123"}) {
    EXPECT_FALSE(XJSONResponseParser::parseJSONResponseWithData(body)) << body;
  }
  EXPECT_TRUE(XJSONResponseParser::parseJSONResponseWithData("\xEF\xBB\xBF {\"Ad\":[]}\r\n"));
}

TEST_F(AdInfo, RefusesDocumentsThatNestTooDeep) {
  const auto nested = [](std::size_t levels) {
    return R"({"x":)" + std::string(levels, '[') + std::string(levels, ']') + "}";
  };
  EXPECT_TRUE(XJSONResponseParser::parseJSONResponseWithData(nested(63)));
  EXPECT_FALSE(XJSONResponseParser::parseJSONResponseWithData(nested(64)));
  EXPECT_FALSE(XJSONResponseParser::parseJSONResponseWithData(nested(200'000)));
  EXPECT_FALSE(XJSONResponseParser::parseJSONResponseWithData(
      "{\"i\":123456789012345678901234,\"x\":" + nested(80) + "}"));
}

struct TextCase {
  std::string_view json;
  std::string_view text;
};

constexpr TextCase textCases[] = {
    {R"("a \"b\"")", "a \"b\""},
    {R"("")", ""},
    {"320", "320"},
    {"-1", "-1"},
    {"-0", "0"},
    {"0.5", "0.5"},
    {"1.0", "1"},
    {"0.1", "0.1"},
    {"1e3", "1000"},
    {"1.25E-2", "0.0125"},
    {"0.0001", "0.0001"},
    {"0.00001", "1e-05"},
    {"1e15", "1000000000000000"},
    {"1e16", "1e+16"},
    {"-1.5e300", "-1.5e+300"},
    {"0.30000000000000004", "0.30000000000000004"},
    {"9223372036854775808", "9223372036854775808"},
    {"18446744073709551615", "18446744073709551615"},
    {"18446744073709551616", "18446744073709551616"},
    {"-9223372036854775809", "-9223372036854775809"},
    {" 123456789012345678901234567890123 ", "123456789012345678901234567890123"},
    {"true", "1"},
    {"false", "0"},
    {"null", "(null)"},
    {"\"(null)\"", "(null)"},
    {"[]", "(\n)"},
    {"{}", "{\n}"},
    {"[1, 2]", "(\n    1,\n    2\n)"},
    {R"(["a", "a b", "", null, true, 0.5, -1])",
     "(\n    a,\n    \"a b\",\n    \"\",\n    \"<null>\",\n    1,\n    \"0.5\",\n    \"-1\"\n)"},
    {R"({"key":"value","a_b":[1,{"z":1}],"a":{}})",
     "{\n    a =     {\n    };\n    \"a_b\" =     (\n        1,\n                {\n"
     "            z = 1;\n        }\n    );\n    key = value;\n}"},
    {R"(["\u00e9\ud83d\ude00\u20ac", "\\\"\n\u0001"])",
     "(\n    \"\\U00e9\\Ud83d\\Ude00\\U20ac\",\n    \"\\\\\\\"\\n\\001\"\n)"},
    {"[123456789012345678901234567890]", "(\n    123456789012345678901234567890\n)"},
};

TEST_F(AdInfo, WritesEveryKindOfValueAsText) {
  for (const auto& row : textCases) {
    const auto body =
        R"({"Ad":[{"Text":)" + std::string{row.json} + R"(,"Ref":"12345678901234567890123:"}]})";
    EXPECT_EQ(read(body).text, row.text) << row.json;
  }
}

}  // namespace
}  // namespace tavo::test
