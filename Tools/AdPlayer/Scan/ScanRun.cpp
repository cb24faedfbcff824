#include "AdPlayer/Scan/ScanRun.h"

#include <glib/gstdio.h>
#include <gtkmm.h>

#include <filesystem>
#include <optional>
#include <stdexcept>

#include <tavo/Runtime.h>
#include <tavo/gtk/GtkPlatform.h>

#include "AdPlayer/Scan/ScanPlay.h"
#include "Gtk/GPtr.h"

namespace tavo::adplayer {

namespace {

// A data folder of its own, gone at the end: what a scan leaves behind must not change the next.
class FreshFolder {
 public:
  FreshFolder() {
    const gtk::GText made{g_dir_make_tmp("adplayer-scan-XXXXXX", nullptr)};
    if (!made) throw std::runtime_error{"No temporary folder could be made."};
    path_ = made.get();
  }
  ~FreshFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  FreshFolder(const FreshFolder&) = delete;
  FreshFolder& operator=(const FreshFolder&) = delete;
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

template <typename Value>
Value waitFor(const std::optional<Value>& value) {
  while (!value) g_main_context_iteration(nullptr, TRUE);
  return *value;
}

Opened opened(const std::string& source, const OpeningOptions& options) {
  std::optional<Opened> result;
  open(source, options, Runtime::current().platform().http,
       [&](const Opened& done) { result = done; });
  return waitFor(result);
}

Recording played(const ScanSubject& subject, const ScanSettings& settings) {
  std::optional<Recording> result;
  ScanPlay play{subject, settings, [&](Recording recording) { result = std::move(recording); }};
  play.start();
  return waitFor(result);
}

ScanSubject subjectOf(const std::string& source, const Playable& playable) {
  const auto& plan = playable.plan;
  ScanSubject subject{.name = source,
                      .domain = plan.domain,
                      .page = plan.page,
                      .position = plan.position,
                      .query = plan.query,
                      .placement = plan.placement,
                      .size = plan.size};
  if (playable.server) subject.server = "http://" + plan.domain.substr(0, plan.domain.find('/'));
  return subject;
}

// Half a year and half a day, so that seasons, office hours and flights of a campaign are others.
constexpr Seconds otherClock{(182.0 * 24 + 11) * 3'600};
constexpr const char* otherLanguage = "ja";
constexpr double otherSize = 1.5;

void playAgain(const ScanSubject& subject, const ScanSettings& settings, Recording& recording) {
  ScanSettings other = settings;
  other.variation = "a clock of half a year later";
  other.pretence = {.clock = otherClock};
  recording.again.push_back(played(subject, other));
  other.variation = "the language " + std::string{otherLanguage};
  other.pretence = {.language = otherLanguage};
  recording.again.push_back(played(subject, other));
  other.variation = "a larger slot";
  other.pretence = {};
  ScanSubject larger = subject;
  larger.size = {subject.size.width * otherSize, subject.size.height * otherSize};
  recording.again.push_back(played(larger, other));
}

Scanned scanOne(const std::string& source, const ScanOptions& options) {
  Scanned scanned{.name = source};
  const Opened result = opened(source, options.opening);
  if (const auto* refusal = std::get_if<Refusal>(&result)) {
    scanned.refusal = refusal->why;
    return scanned;
  }
  const auto subject = subjectOf(source, std::get<Playable>(result));
  const ScanSettings settings{.watching = options.watching};
  scanned.recording = played(subject, settings);
  // A film has no script that could ask for the time.
  const bool isPage = eventsOf(scanned.recording, InspectionKind::media).empty();
  if (options.variations && isPage && scanned.recording.loaded) {
    playAgain(subject, settings, scanned.recording);
  }
  scanned.findings = adplayer::scanned(scanned.recording);
  return scanned;
}

}  // namespace

std::vector<Scanned> scanAll(
    const std::vector<std::string>& sources, const ScanOptions& options,
    const std::function<void(const Scanned&, std::size_t done, std::size_t all)>& progress) {
  if (gtk_init_check() == FALSE) throw std::runtime_error{"There is no screen to play on."};
  const auto application = Gtk::Application::create({}, Gio::Application::Flags::NON_UNIQUE);
  const FreshFolder data;
  const Runtime runtime{gtk::makePlatform({.applicationId = "com.corvanetavo.adplayer",
                                           .dataFolder = data.path(),
                                           .assumeReachable = true,
                                           .adNetworkLibrary = options.adNetwork})};
  std::vector<Scanned> scans;
  for (const auto& source : sources) {
    scans.push_back(scanOne(source, options));
    if (progress) progress(scans.back(), scans.size(), sources.size());
  }
  return scans;
}

}  // namespace tavo::adplayer
