#include <cstdio>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/Commands/PlayOptions.h"
#include "AdPlayer/Run/PlayOne.h"

namespace tavo::adplayer {

namespace {

struct OneOptions {
  PlayOptions play;
  std::string source;
  std::string out;
  std::string name;
};

int playIt(const OneOptions& options) {
  auto steps = options.play.steps();
  if (const auto* mistake = std::get_if<ScenarioMistake>(&steps)) {
    std::fprintf(stderr, "adplayer: %s\n", mistake->text.c_str());
    return wrongCall;
  }
  PlayOneOptions one;
  one.source = options.source;
  one.name = options.name;
  one.folder = options.out;
  one.opening = options.play.opening();
  one.steps = std::get<std::vector<Step>>(std::move(steps));
  one.adNetwork = options.play.network;
  one.film = options.play.film;
  if (const auto screen = PlayOptions::sizeFrom(options.play.screen)) {
    one.screenWidth = static_cast<int>(screen->width);
    one.screenHeight = static_cast<int>(screen->height);
  }
  one.givesAddress = options.play.givesAddress;
  one.settings = options.play.settings();
  return playOne(one);
}

}  // namespace

void addPlayOneCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen) {
  const auto options = std::make_shared<OneOptions>();
  options->play.campaigns = surroundings.campaigns;
  auto* const command = program.add_subcommand("play-one", "What run starts for each creative");
  command->group("");
  addSources(*command, options->source)->required();
  command->add_option("--out", options->out)->required();
  command->add_option("--name", options->name);
  options->play.addTo(*command);
  command->callback([options, &chosen] { chosen = [options] { return playIt(*options); }; });
}

}  // namespace tavo::adplayer
