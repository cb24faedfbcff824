#include <deque>

#include "Support/Testing.h"
#include "UserInterface/NativeView/MediaChoice.h"
#include "UserInterface/NativeView/TrackingList.h"

namespace tavo::test {
namespace {

XMediaFile file(const char* type, const char* width, const char* url) {
  XMediaFile media;
  media.type = type;
  media.width = width;
  if (url != nullptr) media.mediaFileURL = url;
  return media;
}

XVASTAd adWith(std::vector<OptionalList<XMediaFile>> creatives) {
  XVASTAd ad;
  ad.inlineAd = std::make_shared<XInlineAd>();
  for (auto& files : creatives) {
    ad.inlineAd->creativesArray->emplace_back().linearAds.mediaFilesArray = std::move(files);
  }
  return ad;
}

std::vector<std::string> texts(const std::vector<Url>& urls) {
  std::vector<std::string> all;
  for (const auto& url : urls) all.push_back(url.text());
  return all;
}

constexpr const char* mp4 = "video/mp4";

TEST(MediaChoiceTest, TheFileThatFits) {
  using Case = std::tuple<std::vector<const char*>, double, const char*>;
  const Case cases[] = {
      {{"320", "480", "640"}, 640, "http://m/640"},
      {{"320", "480", "640"}, 500, "http://m/640"},
      {{"320", "480", "640"}, 1000, "http://m/640"},
      {{"320", "480", "640"}, 100, "http://m/320"},
      {{"640", "320", "480"}, 480, "http://m/480"},
      {{"1280", "640"}, 640, "http://m/1280"},  // text order, on purpose
      {{"640", "1280"}, 2000, "http://m/640"},
  };
  for (const auto& [widths, reference, chosen] : cases) {
    std::vector<XMediaFile> files;
    std::deque<std::string> addresses;  // that the files point to
    for (const char* width : widths) {
      addresses.push_back(std::string{"http://m/"} + width);
      files.push_back(file(mp4, width, addresses.back().c_str()));
    }
    const auto urls = videoURLFromVASTAd(adWith({files}), reference);
    EXPECT_EQ(urls.size(), widths.size() + 1);
    EXPECT_EQ(urls.front().text(), chosen);
  }
}

TEST(MediaChoiceTest, OnlyMp4InExactlyThisSpelling) {
  const auto flash = file("video/x-flv", "640", "http://m/f");
  EXPECT_THAT(videoURLFromVASTAd(adWith({{{flash, file("VIDEO/MP4", "1", "http://m/u")}}}), 640),
              ElementsAre());
  EXPECT_THAT(videoURLFromVASTAd(adWith({{{file(mp4, "640", nullptr)}}}), 640), ElementsAre());
  EXPECT_THAT(videoURLFromVASTAd(XVASTAd{}, 640), ElementsAre());
  EXPECT_THAT(videoURLFromVASTAd(adWith({}), 640), ElementsAre());
}

TEST(MediaChoiceTest, PositionsAreCountedOnAcrossCreativesQuirk) {
  const auto a = file(mp4, "10", "http://m/a");
  const auto b = file(mp4, "10", "http://m/b");
  const auto c = file(mp4, "20", "http://m/c");
  // The second creative's first file is passed over in collecting, but takes part in the choice.
  EXPECT_THAT(texts(videoURLFromVASTAd(adWith({{{a}}, {{b, c}}}), 10)),
              ElementsAre("http://m/b", "http://m/a", "http://m/c"));
  // A last creative without files leaves no choice, but what was collected stays.
  EXPECT_THAT(texts(videoURLFromVASTAd(adWith({{{a}}, std::nullopt}), 10)),
              ElementsAre("http://m/a"));
}

XTrackingEvent event(TrackingEventType type, const char* url) { return {type, url}; }

std::shared_ptr<XVASTAd> trackedAd() {
  auto ad = std::make_shared<XVASTAd>(adWith({{{file(mp4, "1", "http://m/a")}}}));
  ad->inlineAd->creativesArray->front().linearAds.trackingEventsArray = {
      {event(TrackingEventType::start, "http://t/inline"),
       event(TrackingEventType::pause, "http://t/p")}};
  for (const auto& [url, impression] :
       {std::pair{"http://t/outer", "http://t/outer/i"}, {"http://t/inner", "http://t/inner/i"}}) {
    auto wrapper = std::make_shared<XWrapperAd>();
    wrapper->creativesArray->emplace_back().linearAds.trackingEventsArray = {
        {event(TrackingEventType::start, url)}};
    wrapper->impresssionArray = {{std::nullopt, impression}, {std::nullopt, ""}};
    ad->wrapperAd.push_back(std::move(wrapper));
  }
  ad->inlineAd->impresssionArray = {{std::nullopt, "http://t/inline/i"}};
  return ad;
}

TEST(TrackingListTest, WrapperEventsJoinTheInlineListOnceQuirk) {
  const auto ad = trackedAd();
  const auto list = mergedTracking(ad);
  EXPECT_EQ(list.get(), &*ad->inlineAd->creativesArray->front().linearAds.trackingEventsArray);
  EXPECT_EQ(mergedTracking(ad)->size(), 4U) << "merging again adds nothing";
  EXPECT_THAT(texts(*eventUrls(list, TrackingEventType::start)),
              ElementsAre("http://t/inline", "http://t/outer", "http://t/inner"));
  EXPECT_THAT(*eventUrls(list, TrackingEventType::complete), ElementsAre());
}

TEST(TrackingListTest, WithoutAnInlineListNothingIsMerged) {
  const auto noEvents = trackedAd();
  noEvents->inlineAd->creativesArray->front().linearAds.trackingEventsArray.reset();
  const auto noMedia = trackedAd();
  noMedia->inlineAd->creativesArray->front().linearAds.mediaFilesArray->clear();
  for (const auto& ad : {noEvents, noMedia, std::make_shared<XVASTAd>(), {}}) {
    EXPECT_EQ(mergedTracking(ad), nullptr);
  }
  EXPECT_EQ(eventUrls(nullptr, TrackingEventType::start), std::nullopt);
  EXPECT_EQ(eventUrls(std::make_shared<std::vector<XTrackingEvent>>(), TrackingEventType::start),
            std::nullopt);
}

TEST(TrackingListTest, EventUrlsAreEscapedAndImpressionsKeepTheChainsOrder) {
  const auto list = std::make_shared<std::vector<XTrackingEvent>>();
  list->push_back(event(TrackingEventType::skip, " http://t/a b%20c|d "));
  list->push_back({TrackingEventType::skip, std::nullopt});
  EXPECT_THAT(texts(*eventUrls(list, TrackingEventType::skip)),
              ElementsAre("http://t/a%20b%20c%7Cd"));
  EXPECT_THAT(texts(chainImpressions(*trackedAd())),
              ElementsAre("http://t/outer/i", "http://t/inner/i", "http://t/inline/i"));
}

TEST(TrackingListTest, TheLastClickThroughWins) {
  const auto ad = trackedAd();
  EXPECT_EQ(clickThroughOf(*ad), Url{});
  ad->inlineAd->creativesArray->emplace_back();
  auto& clicks = ad->inlineAd->creativesArray->back().linearAds.videoClicksArray;
  clicks.emplace();
  for (const char* url : {"http://c/1", "http://c/2", "  "}) {
    clicks->emplace_back().clickThroughgURL = url;
  }
  EXPECT_EQ(clickThroughOf(*ad).text(), "http://c/2");
}

}  // namespace
}  // namespace tavo::test
