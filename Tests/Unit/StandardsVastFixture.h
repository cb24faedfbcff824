#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "Unit/VastFixture.h"

namespace tavo::test {

// What tells the ads of a test's documents apart.
struct AdText {
  std::string name = "a";
  std::string attributes{};  // of Ad
  std::string linear{};      // attributes of Linear
  std::string media =
      "<MediaFile type='video/mp4' width='320' height='180'>"
      "http://cdn.example/ad.mp4</MediaFile>";
  std::string tracking{};  // more of it
  std::string clicks{};    // in VideoClicks
  std::string more{};      // in Linear
  std::string beside{};    // in Creatives
  std::string content{};   // in InLine
};

inline std::string pings(const std::string& name, const std::string& events) {
  std::string text;
  std::string rest = events;
  while (!rest.empty()) {
    const auto end = std::min(rest.find(' '), rest.size());
    const std::string event = rest.substr(0, end);
    text +=
        "<Tracking event='" + event + "'>http://t.example/" + name + "/" + event + "</Tracking>";
    rest.erase(0, end + 1);
  }
  return text;
}

inline std::string adText(const AdText& ad) {
  return "<Ad " + ad.attributes + "><InLine><Error>http://t.example/" + ad.name +
         "/error?[ERRORCODE]</Error><Impression>http://t.example/" + ad.name +
         "/impression"
         "</Impression>" +
         ad.content + "<Creatives>" + ad.beside + "<Creative><Linear " + ad.linear +
         "><Duration>00:00:30</Duration><TrackingEvents>" + pings(ad.name, "start complete skip") +
         ad.tracking + "</TrackingEvents><VideoClicks>" + ad.clicks + "</VideoClicks><MediaFiles>" +
         ad.media + "</MediaFiles>" + ad.more + "</Linear></Creative></Creatives></InLine></Ad>";
}

inline std::string document(const std::string& ads, const std::string& version = "4.2") {
  return "<VAST version='" + version + "'>" + ads + "</VAST>";
}

inline std::string wrapperText(const std::string& name, const std::string& uri,
                               const std::string& attributes = {}, const std::string& more = {},
                               const std::string& adAttributes = {}) {
  return "<Ad " + adAttributes + "><Wrapper " + attributes + "><VASTAdTagURI>" + uri +
         "</VASTAdTagURI><Error>http://t.example/" + name +
         "/error?[ERRORCODE]</Error><Impression>http://t.example/" + name +
         "/impression</Impression>" + more + "</Wrapper></Ad>";
}

class StandardsVastTest : public VastTest {
 protected:
  explicit StandardsVastTest(const Limits& limits = {}) : VastTest{limits} {
    slot_->standardsMode = true;
    slot_->bannerRefreshInterval = 0;
  }

  void put(const std::string& url, const std::string& text) {
    platform_.http->forget(url);
    platform_.http->answerWith(url, "text/xml", text);
  }
  void serve(const std::string& text) {
    answer(vastAnswer(text));
    load();
    settle();
    advance(0.3);
  }
  // A film at this address, of so many seconds.
  std::string film(const std::string& name, const headless::ScriptedMovie& movie = {}) {
    const std::string url = "http://cdn.example/" + name + ".mp4";
    (*platform_.moviePlayers->movies)[url] = movie;
    platform_.http->answer(url, {});
    return "<MediaFile type='video/mp4' width='320' height='180'>" + url + "</MediaFile>";
  }
  // The pings and what the host was told, without the exchanges that lead there.
  Lines told() {
    Lines lines;
    for (auto& line : happened()) {
      if (line.starts_with("GET http://t.example/")) {
        lines.push_back(line.substr(std::string_view{"GET http://t.example/"}.size()));
      } else if (!line.starts_with("GET ") && !line.starts_with("HEAD ")) {
        lines.push_back(line);
      }
    }
    return lines;
  }
  Lines playedThrough(double seconds = 30) {
    advance(seconds);
    return told();
  }
};

}  // namespace tavo::test
