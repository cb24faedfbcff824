#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "AdPlayer/Commands/Command.h"
#include "InstalledFiles.h"

namespace {

using namespace tavo::adplayer;

// A new command is a file in Commands and a line here.
constexpr std::array<AddCommand, 6> commands{addWindowCommand, addRunCommand,   addScanCommand,
                                             addMraidCommand,  addMergeCommand, addPlayOneCommand};

Surroundings surroundingsOf() {
  std::error_code failure;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  Surroundings surroundings;
  surroundings.program = program.string();
  surroundings.campaigns = tavo::besideProgram(TAVO_SAMPLE_CAMPAIGNS);
  surroundings.network = tavo::besideProgram(TAVO_SAMPLE_NETWORK);
  surroundings.checklist = tavo::besideProgram(TAVO_MRAID_CREATIVES);
  surroundings.film = surroundings.campaigns + "/vast-preroll/clip.mp4";
  if (!std::filesystem::exists(surroundings.network)) surroundings.network.clear();
  if (!std::filesystem::exists(surroundings.film)) surroundings.film.clear();
  return surroundings;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program{"Plays ads and shows what they do.", "adplayer"};
  const Surroundings surroundings = surroundingsOf();
  program.set_version_flag("--version", TAVO_VERSION);
  Chosen chosen;
  for (const auto add : commands) add(program, surroundings, chosen);
  program.require_subcommand(0, 1);
  program.footer(
      "Examples:\n  adplayer\n  adplayer banner.html\n  adplayer run creatives/*.html "
      "--jobs 4 --out "
      "report\n\nadplayer COMMAND --help tells more of each.");
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& wish) {
    return program.exit(wish);
  } catch (const CLI::ParseError& mistake) {
    std::fprintf(stderr, "adplayer: %s\n", mistake.what());
    return wrongCall;
  }
  try {
    return chosen ? chosen() : wrongCall;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "adplayer: %s\n", failure.what());
    return wrongCall;
  }
}
