#include "Unit/VastFixture.h"

#include <algorithm>

namespace tavo::test {

namespace {

constexpr const char* events[] = {"start",    "firstQuartile", "midpoint",      "thirdQuartile",
                                  "complete", "pause",         "resume",        "rewind",
                                  "skip",     "fullscreen",    "exitFullscreen"};

std::string trackingEvents(const std::string& source) {
  std::string text = "<TrackingEvents>";
  for (const std::string event : events) {
    text +=
        "<Tracking event='" + event + "'>http://t.example/" + source + "/" + event + "</Tracking>";
  }
  return text + "</TrackingEvents>";
}

}  // namespace

std::string VastDocument::text() const {
  return "<VAST version='3.0'><Ad><InLine><Impression>http://t.example/inline/impression"
         "</Impression><Creatives><Creative><Linear " +
         linearAttributes + "><Duration>00:00:30</Duration>" +
         (tracked ? trackingEvents("inline") : std::string{}) + "<VideoClicks><ClickThrough>" +
         click + "</ClickThrough></VideoClicks>" + "<MediaFiles><MediaFile type='" + mediaType +
         "' width='320'>" + media +
         "</MediaFile></MediaFiles></Linear></Creative></Creatives></InLine></Ad></VAST>";
}

std::string vastWrapper(const std::string& name, const std::string& uri) {
  return "<VAST version='3.0'><Ad><Wrapper><VASTAdTagURI>" + uri +
         "</VASTAdTagURI><Impression>http://t.example/" + name +
         "/impression</Impression><Creatives><Creative><Linear>" + trackingEvents(name) +
         "</Linear></Creative></Creatives></Wrapper></Ad></VAST>";
}

std::string vastAnswer(const std::string& document) {
  return R"({"Ad":[{"AdType":"text/xml","ImpUrl":"http://track.example/i","Text":")" + document +
         R"("}]})";
}

VastTest::VastTest(const Limits& limits) : AdViewTest{limits} {
  (*platform_.moviePlayers->movies)[mediaUrl] = {};
  (*platform_.moviePlayers->movies)[contentUrl] = {.duration = 600};
  platform_.http->answer(mediaUrl, {});
}

void VastTest::makePreroll() {
  host_ = std::static_pointer_cast<headless::HeadlessMoviePlayer>(
      platform_.moviePlayers->create({0, 60, 320, 180}));
  host_->setContentUrl(Url::parse(contentUrl));
  root_->view()->addSubview(host_);
  makeBanner();
  banner_->setMoviePlayerInstance(host_);
}

void VastTest::makeInterstitial() {
  makeBanner({0, 0, 320, 480});
  banner_->setMobileAdTypes(MobileAdTypes::interstitial);
}

void VastTest::play(const VastDocument& document) {
  answer(vastAnswer(document.text()));
  load();
  settle();
}

headless::HeadlessMoviePlayer& VastTest::movie() { return *platform_.moviePlayers->last(); }

Lines VastTest::played() {
  auto lines = happened();
  std::erase_if(lines, [](const std::string& line) {
    return line.starts_with("GET http://ads.") || line.starts_with("HEAD ") ||
           line == "GET http://track.example/i" || line == "GET http://t.example/inline/impression";
  });
  return lines;
}

std::shared_ptr<Button> VastTest::buttonOn(View& video) {
  for (const auto& subview : video.subviews()) {
    if (auto button = std::dynamic_pointer_cast<Button>(subview)) return button;
    if (auto button = buttonOn(*subview)) return button;
  }
  return nullptr;
}

}  // namespace tavo::test
