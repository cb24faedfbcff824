#include "AdPlayer/Commands/PlayOptions.h"

#include <cstdio>
#include <fstream>
#include <iterator>

namespace tavo::adplayer {

namespace {

std::string checkSize(const std::string& text) {
  if (PlayOptions::sizeFrom(text)) return {};
  return "expected WIDTHxHEIGHT in points, such as 300x250, not \"" + text + "\"";
}

std::optional<Placement> placementFrom(const std::string& text) {
  for (const auto placement : {Placement::banner, Placement::preroll, Placement::interstitial}) {
    if (text == adserver::nameOf(placement)) return placement;
  }
  return std::nullopt;
}

}  // namespace

void PlayOptions::take(const Surroundings& surroundings) {
  campaigns = surroundings.campaigns;
  network = surroundings.network;
  film = surroundings.film;
}

void PlayOptions::addPlaceTo(CLI::App& command) {
  command
      .add_option("--placement", placement, "Where the ad stands: banner, preroll, interstitial")
      ->check(CLI::IsMember({"banner", "preroll", "interstitial"}));
  command.add_option("--size", size, "Size of the slot in points, such as 300x250")
      ->check(checkSize);
  command.add_option("--page", page, "Page to ask for: the source is the address of an ad server");
  command.add_option("--position", position, "Position to ask an ad server for");
  command.add_option("--campaigns", campaigns, "Folder of the campaigns that can be named");
}

void PlayOptions::addTo(CLI::App& command) {
  addPlaceTo(command);
  command.add_option("--scenario", scenario, "File with the steps to take");
  command
      .add_option("--expect", expectation,
                  "Instead of a scenario: loaded, failed or outcome (either)")
      ->check(CLI::IsMember({"loaded", "failed", "outcome"}));
  command.add_option("--screen", screen, "Size of the phone's screen in points")->check(checkSize);
  command.add_option("--network", network, "Library of the ad network for mediated ads");
  command.add_option("--film", film, "The host's own film, an MP4, behind a pre-roll");
  command.add_flag("--standards", standards,
                   "The slot asks for the public standards to the letter");
  command.add_flag("--scale", scales, "The slot lets pictures be scaled");
  command.add_flag("--keep-aspect", keepsAspect, "Scaled pictures keep their proportions");
  command.add_flag("--in-app-browser", inAppBrowser, "Clicks open inside the application");
  command.add_flag("--child-directed", childDirected, "The slot is for children");
  command.add_flag("--page-address", givesAddress,
                   "Pages without an address get one, so that script errors have texts and lines");
  command.add_flag("--bidding", bidding, "The slot asks for bids");
}

std::vector<std::string> PlayOptions::arguments() const {
  std::vector<std::string> words;
  const auto add = [&](const char* name, const std::string& value) {
    if (!value.empty()) words.push_back(std::string{name} + "=" + value);
  };
  add("--placement", placement);
  add("--size", size);
  add("--page", page);
  add("--position", position);
  add("--scenario", scenario);
  add("--expect", expectation);
  add("--screen", screen);
  add("--campaigns", campaigns);
  add("--network", network);
  add("--film", film);
  const auto flag = [&](const char* name, bool isOn) {
    if (isOn) words.emplace_back(name);
  };
  flag("--standards", standards);
  flag("--scale", scales);
  flag("--keep-aspect", keepsAspect);
  flag("--in-app-browser", inAppBrowser);
  flag("--child-directed", childDirected);
  flag("--bidding", bidding);
  flag("--page-address", givesAddress);
  return words;
}

OpeningOptions PlayOptions::opening() const {
  OpeningOptions options;
  options.campaigns = campaigns;
  options.source = {page, position};
  options.placement = placementFrom(placement);
  options.size = sizeFrom(size);
  return options;
}

XAdSlotConfiguration PlayOptions::settings() const {
  XAdSlotConfiguration settings;
  settings.scalingAllowed = scales || keepsAspect;
  settings.maintainAspectRatio = keepsAspect;
  settings.shouldOpenClickThroughURLInAppBrowser = inAppBrowser;
  settings.COPPAPermissions = childDirected;
  settings.RTBRequired = bidding;
  if (standards) settings.standardsMode = true;
  return settings;
}

std::variant<std::vector<Step>, ScenarioMistake> PlayOptions::steps() const {
  if (scenario.empty() && expectation.empty()) return std::vector<Step>{};
  if (scenario.empty()) return defaultScenario(expectation);
  std::ifstream file{scenario};
  if (!file) return ScenarioMistake{scenario + ": there is no such file that can be read."};
  const std::string text{std::istreambuf_iterator<char>{file}, {}};
  return readScenario(text, scenario);
}

std::optional<Size> PlayOptions::sizeFrom(const std::string& text) {
  int width = 0;
  int height = 0;
  char rest = 0;
  if (std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &rest) != 2) return std::nullopt;
  if (width < 1 || height < 1 || width > 4'000 || height > 4'000) return std::nullopt;
  return Size{static_cast<double>(width), static_cast<double>(height)};
}

}  // namespace tavo::adplayer
