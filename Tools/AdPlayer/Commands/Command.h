#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace tavo::adplayer {

// What all commands are told of where they run.
struct Surroundings {
  std::string program;    // the absolute path of this program
  std::string campaigns;  // the sample campaigns
  std::string network;    // the library of the sample ad network; empty: none
  std::string film;       // of the host's own player; empty: none
  std::string checklist;  // the creatives of the checklist
};

// Each command adds its options to the program and sets `chosen` to what is to be done when a
// person names it; that returns the exit status. One file a command, one line in the table of
// main.cpp.
using Chosen = std::function<int()>;
using AddCommand = void (*)(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);

// Also what is done without a command.
void addWindowCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);
void addRunCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);
void addScanCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);
void addMraidCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);
void addMergeCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);
// What `run` starts for each creative; not shown to people.
void addPlayOneCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen);

// Exit statuses: 0 all is as expected, 1 something is not, 2 the call itself was wrong.
constexpr int asExpected = 0;
constexpr int notAsExpected = 1;
constexpr int wrongCall = 2;

}  // namespace tavo::adplayer
