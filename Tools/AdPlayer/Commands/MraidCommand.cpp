#include <algorithm>
#include <memory>
#include <stdexcept>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/MraidChecklist/MraidChecklist.h"
#include "AdPlayer/MraidChecklist/RunMraidChecklist.h"
#include "AdPlayer/Run/VirtualScreen.h"

namespace tavo::adplayer {

namespace {

struct MraidCommandOptions {
  MraidChecklistOptions checklist;
  bool onScreen = false;
};

int playChecklist(const MraidCommandOptions& options) {
  std::unique_ptr<VirtualScreen> screen;
  if (!options.onScreen) {
    screen = std::make_unique<VirtualScreen>();
    VirtualScreen::use(screen->display());
  }
  return runMraidChecklist(options.checklist);
}

std::vector<std::string> creativeNames() {
  const auto all = mraidCreatives();
  return {all.begin(), all.end()};
}

}  // namespace

void addMraidCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen) {
  const auto options = std::make_shared<MraidCommandOptions>();
  options->checklist.creatives = surroundings.checklist;
  auto* const command =
      program.add_subcommand("mraid", "Play the checklist of MRAID 2.0 and print each point");
  command->add_flag("--standards", options->checklist.standards, "In the slots' standards mode");
  command->add_option("--creative", options->checklist.only, "Play this one of its creatives only")
      ->check(CLI::IsMember(creativeNames()));
  command->add_option("--shots", options->checklist.pictureFolder, "Folder for pictures");
  command->add_option("--result", options->checklist.resultFolder,
                      "Folder for a result that adplayer merge takes, with its pictures");
  command->add_flag("--on-screen", options->onScreen, "Play on the screen that there is");
  command->footer(
      "Examples:\n  adplayer mraid\n  adplayer mraid --standards --shots out\n"
      "\nStatus 0: every point is met; 1: some are not; 2: it could not be played.");
  command->callback([options, &chosen] { chosen = [options] { return playChecklist(*options); }; });
}

}  // namespace tavo::adplayer
