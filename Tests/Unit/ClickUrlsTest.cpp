#include "ClickThrough/AppStore.h"
#include "ClickToAction/CalendarClick.h"
#include "ClickToAction/ClickUrls.h"
#include "Unit/TransportFixture.h"

namespace tavo::test {
namespace {

TEST(SmsUrl, GivesRecipientsAndBody) {
  using Row = std::pair<std::string, MessageDraft>;
  const Row rows[] = {
      {"sms:123,456?body=Hi%20there", {{"123", "456"}, "Hi there"}},
      {"sms:123;body=x", {{"123"}, "x"}},
      {"sms:123", {{"123"}, ""}},
      {"sms://123&body=x&body=y", {{"123"}, "x&body=y"}},
      {"sms:+41%2044?body=", {{"+41%2044"}, ""}},
      {"sms:1,,2?body=a,b", {{"1", "", "2"}, "a,b"}},
      {"sms:?body=a%0Ab%zz%", {{""}, "a\nb%zz%"}},
      {"sms:1?body=%ff%fe", {{"1"}, "\xEF\xBF\xBD\xEF\xBF\xBD"}},
      {"sms:", {{""}, ""}},
      {"", {{""}, ""}},
  };
  for (const auto& [url, draft] : rows) EXPECT_EQ(messageFromUrl(Url::fromText(url)), draft) << url;
}

TEST(SmsUrl, QuirkMarkersAreTriedInOneOrder) {
  EXPECT_EQ(extractSMSBodyFromURL(Url::fromText("sms:1;body=a?body=b&body=c")), "c");
  EXPECT_EQ(extractSMSBodyFromURL(Url::fromText("sms:1;body=a?body=b")), "b");
  // "&body" decides although no "&body=" is there.
  EXPECT_EQ(extractSMSBodyFromURL(Url::fromText("sms:1?body=b&bodyguard=1")), "");
}

TEST(SmsUrl, QuirkFourCharactersGoWhateverTheyAre) {
  EXPECT_THAT(messageFromUrl(Url::fromText("SMSX:12")).recipients, ElementsAre(":12"));
  EXPECT_THAT(messageFromUrl(Url::fromText("tel:12?x=sms://")).recipients,
              ElementsAre("?x=sms://"));
}

TEST(SmsUrl, AMillionCharactersAreNoMatter) {
  const std::string longText(1'000'000, ',');
  EXPECT_EQ(messageFromUrl(Url::fromText("sms:" + longText)).recipients.size(), 1'000'001U);
  EXPECT_EQ(extractSMSBodyFromURL(Url::fromText("sms:1?body=" + longText)), longText);
}

TEST(UrlParameters, OfMailsAreNotDecoded) {
  const auto mail = [](const char* url) { return parameterDictionaryFromURL(Url::fromText(url)); };
  EXPECT_THAT(mail("mailto:a@b.example?subject=S%20T&body=B"),
              UnorderedElementsAre(Pair("recipient", "a@b.example"), Pair("subject", "S%20T"),
                                   Pair("body", "B")));
  EXPECT_THAT(mail("mailto:a@b.example"), UnorderedElementsAre(Pair("recipient", "a@b.example")));
  EXPECT_THAT(mail("mailto:?body=a=b&subject&cc=c&=d"),
              UnorderedElementsAre(Pair("recipient", ""), Pair("cc", "c"), Pair("", "d")));
  EXPECT_THAT(mail("mailto:a?b?c=d"),
              UnorderedElementsAre(Pair("recipient", "a"), Pair("b?c", "d")));
}

TEST(UrlParameters, OfOtherSchemesStandBehindTheSemicolonAndAreDecoded) {
  const auto parameters = [](const char* url) {
    return parameterDictionaryFromURL(Url::fromText(url));
  };
  EXPECT_THAT(parameters("http://a.example/p;s%20t=u%26v&w=x"),
              UnorderedElementsAre(Pair("s t", "u&v"), Pair("w", "x")));
  EXPECT_THAT(parameters("http://a.example/p?s=t"), UnorderedElementsAre());
  EXPECT_THAT(parameters(""), UnorderedElementsAre());
}

const AppStoreConfiguration store{.hosts = {"store.example", "shop.example"}};

TEST(AppStore, HostsAreComparedInTwoWays) {
  using Row = std::tuple<const char*, bool, bool>;
  for (const auto& [url, isHost, endsWithHost] :
       {Row{"http://store.example/id1", true, true}, Row{"https://SHOP.Example:8080/", true, true},
        Row{"http://www.store.example/", false, true}, Row{"http://mystore.example/", false, true},
        Row{"http://store.example.org/", false, false},
        Row{"http://a.example/store.example", false, false}, Row{"", false, false},
        Row{"mailto:a@store.example", false, false}}) {
    EXPECT_EQ(isAppStoreHost(Url::fromText(url), store), isHost) << url;
    EXPECT_EQ(endsWithAppStoreHost(Url::fromText(url), store), endsWithHost) << url;
  }
}

TEST(AppStore, AnEmptyHostIsNobodys) {
  const AppStoreConfiguration one{.hosts = {"store.example", ""}};
  EXPECT_FALSE(endsWithAppStoreHost(Url::fromText("http://page.example/"), one));
  EXPECT_FALSE(isAppStoreHost(Url::fromText("about:blank"), one));
}

TEST(AppStore, IdentifiersAreTheDigitsBehindTheFirstId) {
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  using Row = std::pair<const char*, std::optional<std::int64_t>>;
  for (const auto& [url, identifier] :
       {Row{"http://store.example/app/id42?mt=8", 42}, Row{"http://store.example/ID7/id8", 7},
        Row{"http://store.example/app/42", std::nullopt}, Row{"http://store.example", std::nullopt},
        Row{"http://store.example/id99999999999999999999", largest}}) {
    EXPECT_EQ(applicationIdentifier(Url::fromText(url)), identifier) << url;
  }
}

TEST(AppStore, QuirkAnyPieceThatBeginsWithIdIsAnIdentifier) {
  EXPECT_EQ(applicationIdentifier(Url::fromText("http://store.example/ideas/id42")), 0);
  EXPECT_EQ(applicationIdentifier(Url::fromText("http://id3.example/")), 3);
}

using AppStoreClick = TransportTest;

TEST_F(AppStoreClick, AClickLeadsToAnApplicationWhenItsAnswerCameFromTheStore) {
  const char* version = "6";
  const auto answered = [&version](const char* url, std::optional<TransportError> error) {
    HttpResult result;
    if (url != nullptr) result.response.emplace().url = Url::fromText(url);
    if (error) result.error = makeError(*error, "");
    return storeApplication(result, store, version);
  };
  constexpr const char* page = "http://store.example/id42";
  EXPECT_EQ(answered(page, std::nullopt), 42);
  EXPECT_EQ(answered(page, TransportError::bodyTooLarge), 42);
  EXPECT_EQ(answered(page, TransportError::timedOut), std::nullopt);
  EXPECT_EQ(answered(nullptr, TransportError::timedOut), std::nullopt);
  EXPECT_EQ(answered("http://www.store.example/id42", std::nullopt), std::nullopt);
  EXPECT_EQ(answered("http://store.example/42", std::nullopt), std::nullopt);
  EXPECT_EQ(platform_.log->messages().back(), "TAVOSDK: store.example error: couldn't locate id.");
  version = "5.1";
  EXPECT_EQ(answered(page, std::nullopt), std::nullopt);
}

TEST(AppStore, SheetsExistFromVersionSix) {
  for (const char* version : {"6", "6.0", "10.2", "12"}) EXPECT_TRUE(hasStoreSheet(version));
  for (const char* version : {"", "5.9.9", "x"}) EXPECT_FALSE(hasStoreSheet(version));
}

class CalendarClick : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TZ", "UTC", 1);
    tzset();
  }
  static constexpr Date now_{std::chrono::seconds{1'000'000'000}};
};

TEST_F(CalendarClick, ReadsADescriptionWithItsDefaults) {
  const auto parameters = calendarParameters(
      R"({"description":"D","summary":"S","location":"L","start":"2026-11-21T10:00:00Z",)"
      R"("end":"2026-11-21T11:30:00Z","reminder":"-600000"})",
      now_);
  ASSERT_TRUE(parameters);
  const Date start{std::chrono::seconds{1'795'255'200}};
  using namespace std::chrono_literals;
  const ClickToActionParameters expected{{"XParameterStartDate", start},
                                         {"XParameterEndDate", start + 90min},
                                         {"XParameterDescription", std::string{"D"}},
                                         {"XParameterSummary", std::string{"S"}},
                                         {"XParameterLocation", std::string{"L"}},
                                         {"XParameterReminder", std::string{"-600000"}}};
  EXPECT_EQ(*parameters, expected);
  const CalendarEvent event{"D", "S", "L", start, start + 90min, CalendarAlarm{Seconds{-600}}};
  EXPECT_EQ(calendarEvent(*parameters, now_), event);

  const auto bare =
      calendarParameters(R"({"description":"D","start":"soon","reminder":true})", now_);
  ASSERT_TRUE(bare);
  EXPECT_EQ(calendarEvent(*bare, now_), (CalendarEvent{"D", "", "", now_, now_ + 1h, {}}));
  EXPECT_EQ(calendarEvent({}, now_), (CalendarEvent{"", "", "", now_, now_ + 1h, {}}));
}

TEST_F(CalendarClick, HasNoParametersWithoutAMember) {
  for (const char* text : {"", "{}", "[]", R"({"reminder":5})", R"("text")"}) {
    EXPECT_EQ(calendarParameters(text, now_), std::nullopt) << text;
  }
}

TEST_F(CalendarClick, RemindersAreDatesOrMilliseconds) {
  EXPECT_EQ(calendarAlarm("2026-11-21T10:00:00Z"),
            CalendarAlarm{Date{std::chrono::seconds{1'795'255'200}}});
  using Row = std::pair<const char*, double>;
  for (const auto& [text, seconds] :
       {Row{"-600000", -600}, Row{"1500", 1.5}, Row{" +2e3 ms", 2}, Row{"", 0}, Row{"soon", 0},
        Row{"nan", 0}, Row{"inf", 0}, Row{"1e999", 0}, Row{"-1e300", -100.0 * 366 * 24 * 3600}}) {
    EXPECT_EQ(calendarAlarm(text), CalendarAlarm{Seconds{seconds}}) << text;
  }
}

}  // namespace
}  // namespace tavo::test
