#include "Api/ScriptedServer.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace tavo::fuzz {

namespace {

constexpr const char* adServer = "http://ads.example/";
constexpr const char* impressionPrefix = "http://count.example/";

std::string film(bool skippable) {
  return std::string{"<VAST version='3.0'><Ad><InLine>"} +
         "<Impression>http://t.example/i</Impression><Creatives><Creative><Linear" +
         (skippable ? " skipoffset='00:00:02'" : "") +
         "><Duration>00:00:30</Duration><TrackingEvents><Tracking event='start'>http://t.example/s"
         "</Tracking><Tracking event='skip'>http://t.example/k</Tracking></TrackingEvents>"
         "<VideoClicks><ClickThrough>http://click.example/</ClickThrough></VideoClicks><MediaFiles>"
         "<MediaFile type='video/mp4' width='320'>http://media.example/film.mp4</MediaFile>"
         "</MediaFiles></Linear></Creative></Creatives></InLine></Ad></VAST>";
}

std::string answer(std::size_t kind, const std::string& impression) {
  const std::string counted = R"("ImpUrl":")" + impression + '"';
  const std::string bodies[] = {
      R"("AdType":"image/png","FileUrl":"http://cdn.example/a.png","ClkUrl":"http://c.example/",)",
      R"("AdType":"text/html","Text":"<p>page</p>",)",
      R"("AdType":"text/xml","Text":")" + film(true) + "\",",
      R"("AdType":"text/xml","Text":")" + film(false) + "\",",
      R"json("AdType":"text/html","Text":"(null)",)json",
      R"("AdType":"redirect","FileUrl":"http://cdn.example/b.png",)",
      R"("AdType":"redirect","Text":"<b>page</b>",)",
      R"("AdType":"image/gif","FileUrl":"http://cdn.example/empty.gif",)",
      R"("AdType":"text/xml","Text":"<VAST/>",)",
      R"("AdType":"redirect","FileUrl":"http://ads.example/again",)",
  };
  if (kind >= std::size(bodies)) return kind % 2 == 0 ? R"({"Ad":[]})" : "{";
  return R"({"Ad":[{)" + bodies[kind] + counted + "}]}";
}

}  // namespace

ScriptedServer::ScriptedServer(headless::HeadlessPlatform& platform) : platform_{platform} {
  platform_.http->answerWith("", "image/gif", "image 320x50");
  platform_.http->onSend = [this](const HttpRequest& request) { heard(request); };
  (*platform_.moviePlayers->movies)["http://media.example/film.mp4"] = {};
  (*platform_.moviePlayers->movies)["http://media.example/own.mp4"] = {.duration = 600};
}

// Ad requests get an answer of their own; the rest is counted.
void ScriptedServer::heard(const HttpRequest& request) {
  const std::string& url = request.url.text();
  if (url.starts_with(impressionPrefix)) ++impressions_[url];
  if (!url.starts_with(adServer)) return;
  platform_.http->forget(url);
  platform_.http->answer(url, {.headers = {{"Content-Type", "application/json"}},
                               .body = answer(kind_, impressionPrefix + std::to_string(answers_++)),
                               .delay = delay_,
                               .neverAnswers = silent_});
}

void ScriptedServer::chooseAnswer(Bytes& bytes) {
  constexpr std::size_t kinds = 12;
  constexpr double delays[] = {0, 0, 2, 9};
  kind_ = bytes.choose(kinds);
  delay_ = Seconds{bytes.pick(delays)};
  silent_ = bytes.choose(16) == 1;
}

void ScriptedServer::checkImpressions() const {
  for (const auto& [url, times] : impressions_) {
    if (times == 1) continue;
    std::fprintf(stderr, "The impression %s was sent %d times.\n", url.c_str(), times);
    std::abort();
  }
}

}  // namespace tavo::fuzz
