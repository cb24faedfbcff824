#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/MraidChecklist/RunMraidChecklist.h"

namespace tavo::adplayer {

void addMraidCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen) {
  const auto options = std::make_shared<MraidChecklistOptions>();
  options->creatives = surroundings.checklist;
  auto* const command =
      program.add_subcommand("mraid", "Play the checklist of MRAID 2.0 and print each point");
  command->add_flag("--standards", options->standards, "In the slots' standards mode");
  command->add_option("--creative", options->only, "Play this one of its creatives only");
  command->add_option("--shots", options->pictureFolder, "Folder for pictures");
  command->footer(
      "Examples:\n  adplayer mraid\n  adplayer mraid --standards --shots out\n"
      "\nStatus 0: every point is met; 1: some are not; 2: it could not be played.");
  command->callback(
      [options, &chosen] { chosen = [options] { return runMraidChecklist(*options); }; });
}

}  // namespace tavo::adplayer
