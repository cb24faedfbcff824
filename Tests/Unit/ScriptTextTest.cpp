// The two readers of what creatives say about calendar events: dates and script objects.

#include <cstdlib>
#include <ctime>

#include "Extensions/CalendarDate.h"
#include "Extensions/ScriptObject.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

class CalendarDate : public testing::Test {
 protected:
  void SetUp() override { useZone("UTC"); }
  void TearDown() override { useZone(before_.c_str()); }

  static void useZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }

  // "YYYY-MM-DD hh:mm:ss" on the machine's clock, or "none".
  static std::string read(const std::string& text) {
    const auto date = dateFromW3CCalendarDate(text);
    if (!date) return "none";
    const std::time_t moment = std::chrono::system_clock::to_time_t(*date);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%F %T", std::localtime(&moment));
    return buffer;
  }

 private:
  const std::string before_ = std::getenv("TZ") == nullptr ? "UTC" : std::getenv("TZ");
};

TEST_F(CalendarDate, ReadsTheFormsThatCreativesUse) {
  using Row = std::pair<std::string, const char*>;
  const Row rows[] = {
      {"2026-11-21T10:00:30Z", "2026-11-21 10:00:30"},
      {"2026-11-21T10:00:30+01:00", "2026-11-21 10:00:30"},
      {"2026-11-21T10:00:30-0530", "2026-11-21 10:00:30"},
      {"2026-11-21T10:00+05:30", "2026-11-21 10:00:00"},
      {"2026-11-21T10:00-05", "2026-11-21 10:00:00"},
      {"2026-11-21T10:00:30", "2026-11-21 10:00:30"},
      {"1969-12-31T23:59:59Z", "1969-12-31 23:59:59"},
      {"2026-02-31T10:00:00Z", "2026-03-03 10:00:00"},  // days that a month has not run on
      {"", "none"},
      {"T", "none"},
      {"2026-11-21", "none"},
      {"2026-11-21 10:00:30Z", "none"},
      {"2026-11-21T10:00:30TZ", "none"},
      {"2026-13-21T10:00:30Z", "none"},
      {"2026-11-21T25:00:30Z", "none"},
      {"9999-11-21T10:00:00Z", "none"},
      {"0001-01-01T00:00:00Z", "none"},
      {"2026-11-21T10:00:30.5Z", "none"},
      {"2026-11-21T" + std::string(1'000'000, '+'), "none"},
      {std::string(1'000'000, 'T'), "none"},
  };
  for (const auto& [text, date] : rows) EXPECT_EQ(read(text), date) << text.substr(0, 40);
}

TEST_F(CalendarDate, QuirkOnlyATimeWithAnOffsetGainsSeconds) {
  EXPECT_EQ(read("2026-11-21T10:00Z"), "none");
  EXPECT_EQ(read("2026-11-21T10:00"), "none");
  EXPECT_EQ(read("2026-11-21T10:00+00:00"), "2026-11-21 10:00:00");
}

TEST_F(CalendarDate, QuirkTheZoneIsReadAndTheMachinesIsUsed) {
  for (const char* zone : {"UTC", "CET-1CEST,M3.5.0,M10.5.0/3", "EST5"}) {
    useZone(zone);
    EXPECT_EQ(read("2026-07-01T10:00:00+09:00"), "2026-07-01 10:00:00") << zone;
    EXPECT_EQ(read("2026-01-01T10:00:00+09:00"), "2026-01-01 10:00:00") << zone;
  }
}

// An object as text with its members in order; "none" for none.
std::string show(const ScriptObject& object);

std::string show(const ScriptValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return "\"" + *text + "\"";
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (std::holds_alternative<std::nullptr_t>(value)) return "null";
  return show(*std::get<std::shared_ptr<const ScriptObject>>(value));
}

std::string show(const ScriptObject& object) {
  std::string all;
  for (const auto& [key, value] : object.members) {
    if (!all.empty()) all += ",";
    all += key + "=" + show(value);
  }
  return "{" + all + "}";
}

std::string read(std::string_view text) {
  const auto object = dictionaryWithJavaScriptObject(text);
  return object ? show(*object) : "none";
}

TEST(ScriptObject, IsReadLeniently) {
  using Row = std::pair<std::string, const char*>;
  const Row rows[] = {
      {R"({"summary":"s","start":"2026"})", R"({start="2026",summary="s"})"},
      {" \n\t"
       R"({"a":"b"} rest)",
       R"({a="b"})"},
      {R"({ "a": "b", "c": "d" })", R"({a="b",c="d"})"},
      {R"({a":"b",c":"d"})", R"({a="b",c="d"})"},
      {R"({"a""b""c":"d"})", R"({a="b",c="d"})"},
      {R"({"a":true,"b":false,"c":null})", R"({a=true,b=false,c=null})"},
      {R"({"o":{"a":"b","p":{"c":"d"}},"e":"f"})", R"({e="f",o={a="b",p={c="d"}}})"},
      {R"({"":"b","c":""})", R"({c=""})"},
      {R"({"a":"1","a":"2"})", R"({a="2"})"},
      {R"({"a":"x \"y\" z"})", R"({a="x "y" z"})"},
      {R"({"a":"line\nfeed \u0041"})", R"({a="line\nfeed \u0041"})"},
      {R"({"a":"}","b":"{"})", R"({a="}",b="{"})"},
  };
  for (const auto& [text, object] : rows) EXPECT_EQ(read(text), object) << text;
}

TEST(ScriptObject, QuirkNumbersNeverReachIt) {
  EXPECT_EQ(read(R"({"summary":"s","reminder":-600000})"), R"({summary="s"})");
  EXPECT_EQ(read(R"({"a":1,"b":-2.5e+10,"c":.5,"d":+7E2,"e":"f"})"), R"({e="f"})");
}

TEST(ScriptObject, QuirkAnEmptyArrayIsPassedOverAndOneWithElementsRefused) {
  EXPECT_EQ(read(R"({"a":[],"b":"c"})"), R"({b="c"})");
  EXPECT_EQ(read(R"({"a":[ , ],"b":"c"})"), R"({b="c"})");
  EXPECT_EQ(read(R"({"a":["x"],"b":"c"})"), "none");
  EXPECT_EQ(read(R"({"a":[]})"), "none");  // the bracket becomes a name that never ends
}

TEST(ScriptObject, QuirkABackslashBeforeAQuoteIsAlwaysTheQuote) {
  EXPECT_EQ(read(R"({"a":"x\\","b":"c"})"), R"({a="x\",",b="c"})");
}

TEST(ScriptObject, RefusesWhatIsNoneOrHasNoEnd) {
  const std::string texts[] = {
      "",
      "   ",
      "\"text\"",
      "true",
      "12",
      "[]",
      "{",
      "{}",
      R"({"a")",
      R"({"a":)",
      R"({"a":"b)",
      R"({"a":"b\)",
      R"({"a":"b")",
      R"({"a":{"b":"c"})",
      std::string(100'000, '{'),
      std::string(300'000, '{'),
      std::string(100'000, '['),
      R"({"a":")" + std::string(1'000'000, 'x') + R"("})",
  };
  for (const auto& text : texts) EXPECT_EQ(read(text), "none") << text.substr(0, 40);
  std::string nested;
  for (int level = 0; level < 20'000; ++level) nested += R"({"a":)";
  EXPECT_EQ(read(nested + std::string(20'000, '}')), "none");
}

}  // namespace
}  // namespace tavo::test
