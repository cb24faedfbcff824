// An ad on a real screen, beside what a host would write with the bare libraries: the same creative
// in a new web view per ad, the same picture through libsoup and GdkTexture.
#include <libsoup/soup.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>

#include "BareBanner.h"
#include "Elapsed.h"
#include "Gtk/Scene/Textures.h"
#include "Report.h"
#include "Services/HttpClient.h"
#include "Services/ImageDecoder.h"
#include "Services/RunLoop.h"
#include "Support/GtkHost.h"

namespace tavo::benchmark {
namespace {

using adserver::RequestKind;
using benchmarks::atMost;
using test::GtkHost;

constexpr int htmlRounds = 20;
constexpr int pictureRounds = 200;

// The host's loop, looked at after each of its turns. It sleeps between them, as a host's does: the
// engine's processes need the processor.
void turnUntil(const std::function<bool()>& done) {
  const auto deadline = Clock::now() + std::chrono::seconds{30};
  const Timer waker = Runtime::current().platform().runLoop->every(Seconds{1}, [] {});
  while (!done() && Clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
}

struct HtmlTimes {
  std::vector<double> loaded;
  std::vector<double> secondFrame;
};

class BannerBenchmark {
 public:
  BannerBenchmark() : host_{TAVO_BENCHMARK_CAMPAIGNS} {
    std::ifstream file{std::string{TAVO_BENCHMARK_CAMPAIGNS} + "/frame-banner/creative.html"};
    creative_.assign(std::istreambuf_iterator<char>{file}, {});
    const std::string_view placeholder{"${server}"};
    creative_.replace(creative_.find(placeholder), placeholder.size(), host_.server().baseUrl());
  }

  int run() {
    refresh();
    newSlot();
    floors();
    picture();
    paint();
    return report_.finish();
  }

 private:
  [[nodiscard]] std::size_t frames() {
    const auto pings = host_.server().record().requests(RequestKind::Tracking);
    return static_cast<std::size_t>(std::count_if(
        pings.begin(), pings.end(), [](const auto& ping) { return ping.detail == "frame"; }));
  }

  void measure(HtmlTimes& times, const std::function<bool()>& loaded, Clock::time_point start) {
    const std::size_t before = frames();
    std::optional<double> finished;
    std::optional<double> drawn;
    turnUntil([&] {
      if (!finished && loaded()) finished = millisecondsSince(start);
      if (!drawn && frames() > before) drawn = millisecondsSince(start);
      return finished && drawn;
    });
    times.loaded.push_back(finished.value_or(1e9));
    times.secondFrame.push_back(drawn.value_or(1e9));
  }

  // What the one before leaves behind, a web process that ends above all, is not the next one's
  // cost.
  static void comeToRest() {
    bool rested = false;
    const Timer rest =
        Runtime::current().platform().runLoop->after(Seconds{0.4}, [&] { rested = true; });
    turnUntil([&] { return rested; });
  }

  void oursOnce(HtmlTimes& times) {
    comeToRest();
    const auto calls = host_.calls().size();
    const auto start = Clock::now();
    host_.load("frame-banner");
    measure(
        times, [&] { return host_.calls().size() > calls && host_.calls().back() == "didLoad"; },
        start);
  }

  void bareOnce(HtmlTimes& times) {
    comeToRest();
    const auto start = Clock::now();
    const BareBanner banner{host_.column(), creative_, host_.server().baseUrl() + "/"};
    measure(
        times, [&] { return banner.isLoaded(); }, start);
  }

  // What the engine alone takes, in a view that is there and seen, and in a new one of a process
  // that runs: nobody can be faster.
  void floors() {
    const auto base = host_.server().baseUrl() + "/";
    BareBanner standing{host_.column(), creative_, base};
    turnUntil([&] { return standing.isLoaded(); });
    HtmlTimes again;
    HtmlTimes beside;
    for (int round = 0; round < htmlRounds; ++round) {
      comeToRest();
      const auto start = Clock::now();
      standing.load(creative_, base);
      measure(
          again, [&] { return standing.isLoaded(); }, start);
      comeToRest();
      const auto second = Clock::now();
      const BareBanner banner{host_.column(), creative_, base, &standing};
      measure(
          beside, [&] { return banner.isLoaded(); }, second);
    }
    const auto tell = [&](const char* what, const std::vector<double>& times) {
      report_.value(what, benchmarks::median(times), "ms", std::nullopt);
    };
    tell("floor: bare load into the view that is there", again.loaded);
    tell("floor: the same, second frame", again.secondFrame);
    tell("floor: bare new view, process running", beside.loaded);
    tell("floor: the same, second frame", beside.secondFrame);
  }

  // The first of each starts the engine and is not counted.
  void refresh() {
    HtmlTimes ours;
    HtmlTimes bare;
    HtmlTimes first;
    oursOnce(first);
    bareOnce(first);
    for (int round = 0; round < htmlRounds; ++round) {
      oursOnce(ours);
      bareOnce(bare);
    }
    report_.ratio("refresh of an HTML banner, load finished", ours.loaded, bare.loaded, "ms",
                  atMost(0.05));
    report_.ratio("refresh of an HTML banner, second frame", ours.secondFrame, bare.secondFrame,
                  "ms", atMost(0.12));
  }

  // The former slots stay: nothing of theirs is free to be used again.
  void newSlot() {
    HtmlTimes ours;
    HtmlTimes bare;
    std::vector<std::shared_ptr<XAdView>> former;
    for (int round = 0; round < htmlRounds; ++round) {
      former.push_back(host_.banner());
      host_.makeBanner();
      oursOnce(ours);
      bareOnce(bare);
    }
    report_.ratio("first HTML ad of a new slot, load finished", ours.loaded, bare.loaded, "ms",
                  atMost(0.12));
    report_.ratio("first HTML ad of a new slot, second frame", ours.secondFrame, bare.secondFrame,
                  "ms", atMost(0.20));
  }

  [[nodiscard]] std::string pictureUrl() {
    return host_.server().baseUrl() + "/assets/picture-banner/banner.png";
  }

  double ourPicture() {
    const auto& platform = Runtime::current().platform();
    Glib::RefPtr<Gdk::Texture> texture;
    const auto start = Clock::now();
    HttpRequest request;
    request.url = Url::parse(pictureUrl());
    platform.http->send(request, [&](const HttpResult& result) {
      platform.images->decode(result.response ? result.response->body : "",
                              [&](const Image& picture) { texture = gtk::textureOf(picture); });
    });
    turnUntil([&] { return texture != nullptr; });
    return millisecondsSince(start);
  }

  double barePicture() {
    GdkTexture* texture = nullptr;
    const auto start = Clock::now();
    SoupMessage* message = soup_message_new("GET", pictureUrl().c_str());
    soup_session_send_and_read_async(
        session_, message, G_PRIORITY_DEFAULT, nullptr,
        [](GObject* session, GAsyncResult* result, gpointer data) {
          GBytes* bytes = soup_session_send_and_read_finish(SOUP_SESSION(session), result, nullptr);
          *static_cast<GdkTexture**>(data) = gdk_texture_new_from_bytes(bytes, nullptr);
          g_bytes_unref(bytes);
        },
        &texture);
    turnUntil([&] { return texture != nullptr; });
    const double time = millisecondsSince(start);
    g_object_unref(texture);
    g_object_unref(message);
    return time;
  }

  void picture() {
    std::vector<double> ours;
    std::vector<double> bare;
    for (int round = 0; round < pictureRounds; ++round) {
      ours.push_back(ourPicture());
      bare.push_back(barePicture());
    }
    report_.ratio("image GET to texture", ours, bare, "ms", atMost(1.05));
  }

  // Frames from the host's "did load" to the first that shows the picture.
  void paint() {
    std::size_t most = 0;
    for (int round = 0; round < htmlRounds; ++round) {
      host_.makeBanner();
      turnUntil([&] { return host_.slot().get_mapped() && host_.pixelInSlot(4, 4) != shown_; });
      const auto calls = host_.calls().size();
      host_.load("picture-banner");
      turnUntil([&] { return host_.calls().size() > calls; });
      std::size_t painted = 0;
      GdkFrameClock* const clock = host_.window().get_frame_clock()->gobj();
      const gulong counter = g_signal_connect(
          clock, "after-paint", G_CALLBACK(+[](GdkFrameClock*, std::size_t* count) { ++*count; }),
          &painted);
      turnUntil([&] { return host_.pixelInSlot(4, 4) == shown_; });
      g_signal_handler_disconnect(clock, counter);
      most = std::max(most, painted);
    }
    report_.value("picture loaded to painted, frames at most", static_cast<double>(most), "",
                  atMost(1));
  }

  benchmarks::Report report_{"BannerBenchmark"};
  GtkHost host_;
  std::string creative_;
  SoupSession* const session_ = soup_session_new();
  const Color shown_ = colorOfPicture();

  static Color colorOfPicture() {
    const auto file = Gdk::Texture::create_from_filename(std::string{TAVO_BENCHMARK_CAMPAIGNS} +
                                                         "/picture-banner/banner.png");
    std::vector<guchar> pixels(static_cast<std::size_t>(file->get_width() * file->get_height()) *
                               4);
    gdk_texture_download(file->gobj(), pixels.data(), static_cast<gsize>(file->get_width()) * 4);
    const auto at = static_cast<std::size_t>(4 * file->get_width() + 4) * 4;
    return {static_cast<float>(pixels[at + 2]) / 255.0F,
            static_cast<float>(pixels[at + 1]) / 255.0F, static_cast<float>(pixels[at]) / 255.0F,
            1};
  }
};

}  // namespace
}  // namespace tavo::benchmark

int main() { return tavo::benchmark::BannerBenchmark{}.run(); }
