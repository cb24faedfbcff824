#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include <tavo/XAdSlotConfiguration.h>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/Run/Scenario.h"
#include "AdPlayer/Source/Opening.h"

namespace tavo::adplayer {

// The options that say how something is played, alike in each command that plays.
struct PlayOptions {
  std::string campaigns;
  std::string placement;  // empty: by what it is
  std::string size;       // "WxH"; empty: by what it is
  std::string page;
  std::string position;
  std::string scenario;     // a file; empty: the steps that belong to what is played, or the usual
  std::string expectation;  // of the usual steps
  std::string network;
  std::string film;
  std::string screen = "360x640";
  bool standards = false;
  bool scales = false;
  bool keepsAspect = false;
  bool inAppBrowser = false;
  bool childDirected = false;
  bool bidding = false;
  bool givesAddress = false;

  // What comes with the program: campaigns, network and film.
  void take(const Surroundings& surroundings);
  // All of them, or those only that say what is played and where it stands.
  void addTo(CLI::App& command);
  void addPlaceTo(CLI::App& command);
  // The same options again, for a process of one's own.
  [[nodiscard]] std::vector<std::string> arguments() const;

  [[nodiscard]] OpeningOptions opening() const;
  [[nodiscard]] XAdSlotConfiguration settings() const;
  // Empty where neither a scenario nor an expectation was named.
  [[nodiscard]] std::variant<std::vector<Step>, ScenarioMistake> steps() const;
  // Width and height of "WxH".
  [[nodiscard]] static std::optional<Size> sizeFrom(const std::string& text);
};

// The argument that names what is to be played, one or many.
template <typename Sources>
CLI::Option* addSources(CLI::App& command, Sources& sources) {
  return command.add_option("source", sources,
                            "HTML or VAST files, their URLs, recorded JSON answers, pictures, ad "
                            "servers, or names of campaigns");
}

}  // namespace tavo::adplayer
