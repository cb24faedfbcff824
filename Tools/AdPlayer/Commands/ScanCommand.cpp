#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/Commands/PlayOptions.h"
#include "AdPlayer/Run/VirtualScreen.h"
#include "AdPlayer/Scan/ScanRun.h"

namespace tavo::adplayer {

namespace {

struct ScanCommandOptions {
  PlayOptions play;
  std::vector<std::string> sources;
  std::string sarif;
  std::string junit;
  std::string failOn = "error";
  double seconds = 3;
  bool once = false;
  bool onScreen = false;
  bool list = false;
};

constexpr const char* scanExamples =
    "Examples:\n"
    "  adplayer scan banner.html\n"
    "  adplayer scan creatives/*.html --fail-on warning --sarif scan.sarif --junit scan.xml\n"
    "  adplayer scan https://example.com/vast.xml\n"
    "  adplayer scan ads.example.com/delivery --page news/front --position Top\n"
    "  adplayer scan --list\n"
    "\nNobody touches the creative while it plays. Status 0: nothing as severe as --fail-on; 1: "
    "something is; 2: a wrong call.";

int listChecks() {
  for (const auto& check : checks()) {
    std::printf("%-23s %-8s %s\n", std::string{check.name}.c_str(),
                std::string{nameOf(check.severity)}.c_str(), std::string{check.what}.c_str());
  }
  return asExpected;
}

void writeReport(const std::string& path, const std::string& text) {
  if (path.empty()) return;
  std::ofstream file{path, std::ios::binary};
  file << text;
  if (!file.flush()) throw std::runtime_error{"Cannot write \"" + path + "\"."};
}

bool isTooMuch(const std::string& failOn, const std::vector<Scanned>& scans) {
  const auto most = worst(scans);
  if (!most || failOn == "never") return false;
  if (failOn == "note") return true;
  return *most == Severity::error || (failOn == "warning" && *most == Severity::warning);
}

int scanThem(const ScanCommandOptions& options) {
  if (options.list) return listChecks();
  if (options.sources.empty()) {
    throw std::runtime_error{"Nothing to scan was named; see adplayer scan --help."};
  }
  // Told before the plays, which take their time.
  writeReport(options.sarif, "");
  writeReport(options.junit, "");
  std::unique_ptr<VirtualScreen> screen;
  if (!options.onScreen) {
    screen = std::make_unique<VirtualScreen>();
    VirtualScreen::use(screen->display());
  }
  const ScanOptions scan{.opening = options.play.opening(),
                         .watching = Seconds{options.seconds},
                         .variations = !options.once,
                         .adNetwork = options.play.network};
  const auto scans =
      scanAll(options.sources, scan, [](const Scanned& one, std::size_t done, std::size_t all) {
        if (all > 1) std::printf("[%zu/%zu] ", done, all);
        std::fputs(textReport(one).c_str(), stdout);
        std::fflush(stdout);
      });
  std::fputs(summaryOf(scans).c_str(), stdout);
  writeReport(options.sarif, sarifReport(scans));
  writeReport(options.junit, junitReport(scans));
  if (scans.size() == 1 && !scans.front().refusal.empty()) return wrongCall;
  return isTooMuch(options.failOn, scans) ? notAsExpected : asExpected;
}

}  // namespace

void addScanCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen) {
  const auto options = std::make_shared<ScanCommandOptions>();
  options->play.take(surroundings);
  auto* const command =
      program.add_subcommand("scan", "Say what only playing a creative shows to be wrong with it");
  command->footer(scanExamples);
  addSources(*command, options->sources);
  command->add_option("--sarif", options->sarif, "File for the findings as SARIF 2.1.0");
  command->add_option("--junit", options->junit, "File for the findings as JUnit's XML");
  command
      ->add_option("--fail-on", options->failOn,
                   "The least severity that makes the status 1: error, warning, note, never")
      ->check(CLI::IsMember({"error", "warning", "note", "never"}));
  command->add_option("--seconds", options->seconds, "How long to watch after the load")
      ->check(CLI::Range(0.1, 600.0));
  command->add_flag("--once", options->once, "Play once: no other clock, language and size");
  command->add_flag("--on-screen", options->onScreen, "Play on the screen that there is");
  command->add_flag("--list", options->list, "Print the checks and end");
  options->play.addPlaceTo(*command);
  command->callback([options, &chosen] { chosen = [options] { return scanThem(*options); }; });
}

}  // namespace tavo::adplayer
