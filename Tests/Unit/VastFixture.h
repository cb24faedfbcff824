#pragma once

#include <string>
#include <vector>

#include <tavo/Button.h>

#include "Headless/HeadlessMoviePlayer.h"
#include "Unit/AdViewFixture.h"

namespace tavo::test {

// A document with one video of thirty seconds and a ping for everything it may report.
struct VastDocument {
  std::string linearAttributes{};  // of Linear, for example a skip offset
  std::string media = "http://cdn.example/ad.mp4";
  std::string mediaType = "video/mp4";
  bool tracked = true;
  std::string click = "http://click.example/video";

  [[nodiscard]] std::string text() const;
};

// A document that leads to another one; its pings carry `name`.
[[nodiscard]] std::string vastWrapper(const std::string& name, const std::string& uri);

// The ad server's answer with a document.
[[nodiscard]] std::string vastAnswer(const std::string& document);

// A host in memory with a movie player of its own: it lends it to its slot, and starts its content
// when the ad is over.
class VastTest : public AdViewTest {
 protected:
  explicit VastTest(const Limits& limits = {});

  void makePreroll();
  // As the interstitial's controller will: the slot fills the window.
  void makeInterstitial();
  void play(const VastDocument& document = {});
  [[nodiscard]] headless::HeadlessMoviePlayer& movie();
  // What happened since the last call, without the requests that lead to the video.
  std::vector<std::string> played();
  // The button that the ad shows on `video` or below it; null when there is none.
  [[nodiscard]] static std::shared_ptr<Button> buttonOn(View& video);

  static constexpr const char* mediaUrl = "http://cdn.example/ad.mp4";
  static constexpr const char* contentUrl = "http://host.example/film.mp4";
  std::shared_ptr<headless::HeadlessMoviePlayer> host_;
};

}  // namespace tavo::test
