#include "WebMeasurements.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>
#include <optional>

#include <tavo/Runtime.h>
#include <tavo/TapRecognizer.h>

#include "AdManager/HtmlSlots.h"
#include "BareBanner.h"
#include "BareVideo.h"
#include "Elapsed.h"
#include "ProcessUse.h"
#include "Support/GtkHost.h"

namespace tavo::benchmark {
namespace {

using test::GtkHost;

constexpr int answerDelay = 250;  // milliseconds; the campaign says it too

bool turnUntil(const std::function<bool()>& done) {
  const auto deadline = Clock::now() + std::chrono::seconds{60};
  const guint waker = g_timeout_add(
      1000, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  while (!done() && Clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
  g_source_remove(waker);
  return done();
}

void turnFor(std::chrono::milliseconds time) {
  const auto end = Clock::now() + time;
  turnUntil([&] { return Clock::now() >= end; });
}

std::size_t frames(adserver::AdServer& server) {
  return server.record().requests(adserver::RequestKind::Tracking).size();
}

// A host without the library, beside the same server.
struct BareHost {
  explicit BareHost(const char* campaigns = TAVO_BENCHMARK_CAMPAIGNS) : server{campaigns} {
    gtk_init();
    std::ifstream file{std::string{TAVO_BENCHMARK_CAMPAIGNS} + "/frame-banner/creative.html"};
    creative.assign(std::istreambuf_iterator<char>{file}, {});
    const std::string_view placeholder{"${server}"};
    creative.replace(creative.find(placeholder), placeholder.size(), server.baseUrl());
    window.set_default_size(360, 640);
    window.set_child(column);
    window.present();
  }
  [[nodiscard]] std::unique_ptr<BareBanner> makeBanner() {
    return std::make_unique<BareBanner>(column, creative, server.baseUrl() + "/");
  }

  Glib::RefPtr<Gtk::Application> application =
      Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE);
  adserver::AdServer server;
  Gtk::Window window;
  Gtk::Box column{Gtk::Orientation::VERTICAL};
  std::string creative;
};

void loadAndWait(GtkHost& host, const std::string& campaign) {
  const auto loads = [&] {
    return std::count(host.calls().begin(), host.calls().end(), "didLoad");
  };
  const auto before = loads();
  host.load(campaign);
  turnUntil([&] { return loads() > before; });
}

// Notes how long the loop works between two waits.
class StallWatch {
 public:
  StallWatch() {
    longest = 0;
    began = {};
    g_main_context_set_poll_func(nullptr, pollAndNote);
  }
  ~StallWatch() { g_main_context_set_poll_func(nullptr, nullptr); }
  StallWatch(const StallWatch&) = delete;
  StallWatch& operator=(const StallWatch&) = delete;

  [[nodiscard]] static double longestStall() { return longest; }

 private:
  static gint pollAndNote(GPollFD* descriptors, guint count, gint timeout) {
    if (began) longest = std::max(longest, millisecondsSince(*began));
    const gint result = g_poll(descriptors, count, timeout);
    began = Clock::now();
    return result;
  }

  static inline double longest = 0;
  static inline std::optional<Clock::time_point> began;
};

void expandAndClose(GtkHost& host) {
  const auto page = host.banner()->webViewInstance();
  if (!page) return;
  const auto called = [&](const char* name) {
    return std::count(host.calls().begin(), host.calls().end(), name);
  };
  for (const auto& [script, call] :
       {std::pair{"mraid.expand()", "didExpand"}, std::pair{"mraid.close()", "didCollapse"}}) {
    const auto before = called(call);
    recognizeTap(*page);
    page->evaluate(script, [](const std::string&) {});
    turnUntil([&, name = call] { return called(name) > before; });
    turnFor(std::chrono::milliseconds{50});
  }
}

}  // namespace

double memoryOfSlots(int slots) {
  GtkHost host{TAVO_BENCHMARK_CAMPAIGNS};
  struct Shown {
    std::shared_ptr<XAdView> banner = XAdView::create({0, 0, 320, 50});
    std::unique_ptr<gtk::AdSlot> widget = std::make_unique<gtk::AdSlot>(banner);
  };
  const std::string domain =
      host.server().baseUrl().substr(std::string_view{"http://"}.size()) + "/ads";
  std::vector<Shown> all(static_cast<std::size_t>(slots));
  for (auto& slot : all) {
    slot.banner->setSlotConfiguration(host.settings);
    host.column().append(*slot.widget);
    slot.banner->loadWithDomainName(domain, "frame-banner", "Bottom1");
  }
  // Each page sends its impression and its second frame.
  turnUntil([&] { return frames(host.server()) >= 2 * all.size(); });
  turnFor(std::chrono::seconds{2});
  const double megabytes = familyMegabytes();
  for (auto& slot : all) host.column().remove(*slot.widget);
  return megabytes;
}

double memoryOfBareViews(int views) {
  BareHost host;
  std::vector<std::unique_ptr<BareBanner>> all;
  for (int view = 0; view < views; ++view) all.push_back(host.makeBanner());
  turnUntil([&] { return frames(host.server) >= all.size(); });
  turnFor(std::chrono::seconds{2});
  return familyMegabytes();
}

namespace {

Growth growthOver(const std::function<void()>& show) {
  constexpr int settled = 400;
  constexpr int refreshes = 2'000;
  constexpr int window = 500;  // the life of a web process: what it holds depends on its age
  constexpr int look = 25;
  Growth first{};
  Growth last{};
  for (int refresh = 1; refresh <= settled + refreshes + window; ++refresh) {
    show();
    if (refresh % look != 0) continue;
    // Films end on threads of their own, a moment after the next one has begun; and a process that
    // has shown many pages is left when there is time to start another.
    turnFor(std::chrono::seconds{1});
    const bool isEarly = refresh > settled && refresh <= settled + window;
    const bool isLate = refresh > settled + refreshes;
    if (!isEarly && !isLate) continue;
    Growth& sum = isEarly ? first : last;
    sum.host += proportionalMegabytes(getpid(), "Pss_Anon:");
    sum.family += familyMegabytes("Pss_Anon:");
  }
  return {last.host / first.host, last.family / first.family};
}

}  // namespace

Growth growthOverRefreshes(const char* campaign) {
  GtkHost host{TAVO_CAMPAIGNS};
  host.banner()->setMobileAdTypes(std::string_view{campaign} == "vast-preroll"
                                      ? MobileAdTypes::interstitial
                                      : MobileAdTypes::banner);
  auto& record = host.server().record();
  return growthOver([&] {
    record.clear();
    host.load(campaign);
    turnUntil([&] { return !record.requests(adserver::RequestKind::Tracking).empty(); });
  });
}

Growth growthOfBareView() {
  BareHost host;
  const auto banner = host.makeBanner();
  return growthOver([&] {
    turnUntil([&] { return banner->isLoaded(); });
    banner->load(host.creative, host.server.baseUrl() + "/");
  });
}

namespace {

// Shows what a session has fetched.
struct FetchedPicture {
  GtkWidget* picture;
  bool isShown = false;

  static void answered(GObject* session, GAsyncResult* result, gpointer self) {
    auto& fetched = *static_cast<FetchedPicture*>(self);
    GBytes* bytes = soup_session_send_and_read_finish(SOUP_SESSION(session), result, nullptr);
    GdkTexture* texture = bytes == nullptr ? nullptr : gdk_texture_new_from_bytes(bytes, nullptr);
    gtk_picture_set_paintable(GTK_PICTURE(fetched.picture), GDK_PAINTABLE(texture));
    fetched.isShown = texture != nullptr;
    g_clear_object(&texture);
    g_clear_pointer(&bytes, g_bytes_unref);
  }
};

}  // namespace

Growth growthOfBarePictures() {
  BareHost host{TAVO_CAMPAIGNS};
  GtkWidget* const picture = gtk_picture_new();
  gtk_box_append(host.column.gobj(), picture);
  SoupSession* const session = soup_session_new();
  const std::string url = host.server.baseUrl() + "/assets/image-banner/banner.png";
  const Growth growth = growthOver([&] {
    FetchedPicture fetched{picture};
    SoupMessage* const message = soup_message_new("GET", url.c_str());
    soup_session_send_and_read_async(session, message, G_PRIORITY_DEFAULT, nullptr,
                                     &FetchedPicture::answered, &fetched);
    g_object_unref(message);
    turnUntil([&] { return fetched.isShown; });
  });
  g_object_unref(session);
  return growth;
}

Growth growthOfBareFilms() {
  BareHost host{TAVO_CAMPAIGNS};
  const std::string url = host.server.baseUrl() + "/assets/vast-preroll/clip.mp4";
  return growthOver([&] {
    const BareVideo film{host.column, url};
    turnUntil([&] { return film.isPrepared() || film.error() != nullptr; });
  });
}

double firstAd(Slot slot) {
  GtkHost host{TAVO_BENCHMARK_CAMPAIGNS};
  turnFor(std::chrono::milliseconds{500});
  if (slot == Slot::hasShownHtml) {
    const std::string domain =
        host.server().baseUrl().substr(std::string_view{"http://"}.size()) + "/ads";
    HtmlSlots{Runtime::current().platform().userDefaults}.add(
        HtmlSlots::nameOf({domain, "late-banner", "Bottom1", "", ""}));
  }
  loadAndWait(host, "late-banner");
  const auto end = g_get_monotonic_time();
  const auto asked = host.server().record().requests(adserver::RequestKind::Ad).at(0);
  return static_cast<double>(end - asked.monotonicTime) / 1000 - answerDelay;
}

double firstBareView() {
  BareHost host;
  turnFor(std::chrono::milliseconds{500});
  const auto start = Clock::now();
  const auto banner = host.makeBanner();
  turnUntil([&] { return banner->isLoaded(); });
  return millisecondsSince(start);
}

double longestStall() {
  GtkHost host{TAVO_BENCHMARK_CAMPAIGNS};
  loadAndWait(host, "frame-banner");
  turnFor(std::chrono::milliseconds{500});
  const StallWatch watch;
  for (int load = 0; load < 60; ++load) {
    loadAndWait(host, "frame-banner");
    turnFor(std::chrono::milliseconds{20});
  }
  turnUntil([&] { return host.banner()->webViewInstance() != nullptr; });
  for (int expansion = 0; expansion < 20; ++expansion) expandAndClose(host);
  return StallWatch::longestStall();
}

}  // namespace tavo::benchmark
