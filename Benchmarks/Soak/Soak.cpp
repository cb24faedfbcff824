// Soak MINUTES PLOT [ACT]: does everything that happens to a host, in a random order that is the
// same each time, and looks now and then at what the host holds. A table for reading, a picture in
// PLOT. Ends with 1 when something that was begun did not end. With the name of an act, does only
// that.
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Sample.h"
#include "SamplePlot.h"
#include "SoakHost.h"

namespace tavo::benchmark {
namespace {

using Clock = std::chrono::steady_clock;

struct Act {
  const char* name;
  bool (SoakHost::*run)();
  int weight;  // how often, beside the others
};

constexpr std::array acts{
    Act{"picture", &SoakHost::picture, 20},
    Act{"page", &SoakHost::page, 20},
    Act{"expansion", &SoakHost::expansion, 6},
    Act{"failure", &SoakHost::failure, 4},
    Act{"film in the player", &SoakHost::filmInThePlayer, 4},
    Act{"wrapped film", &SoakHost::wrappedFilmToItsEnd, 2},
    Act{"missing film", &SoakHost::filmThatIsMissing, 2},
    Act{"interstitial page", &SoakHost::interstitialPage, 4},
    Act{"interstitial with a close control of its own", &SoakHost::interstitialWithOwnClose, 3},
    Act{"interstitial film", &SoakHost::interstitialFilm, 3},
    Act{"new slot", &SoakHost::newSlot, 6},
    Act{"dropped load", &SoakHost::droppedLoad, 6},
    Act{"dead page", &SoakHost::deadPage, 2},
    Act{"lost network", &SoakHost::lostNetwork, 2},
    Act{"turned window", &SoakHost::turnedWindow, 2},
};

void printHead() {
  for (const Column& column : columns) std::printf("%12s", std::string{column.name}.c_str());
  std::printf("\n");
}

void print(const Sample& sample) {
  for (const Column& column : columns) std::printf("%12.1f", sample.*column.value);
  std::printf("\n");
  std::fflush(stdout);
}

// What each thing measured was in the second quarter of the time and in the last, on the average:
// the first quarter is for what is made once.
void printGrowth(const std::vector<Sample>& samples) {
  const std::size_t quarter = samples.size() / 4;
  if (quarter == 0) return;
  std::printf("\n%14s%14s%14s%9s\n", "", "2nd quarter", "last quarter", "ratio");
  for (std::size_t column = firstMeasured; column < columns.size(); ++column) {
    const auto average = [&](std::size_t first) {
      double sum = 0;
      for (std::size_t i = first; i < first + quarter; ++i) {
        sum += samples[i].*columns.at(column).value;
      }
      return sum / static_cast<double>(quarter);
    };
    const double early = average(quarter);
    const double late = average(samples.size() - quarter);
    std::printf("%14s%14.1f%14.1f%9.3f\n", std::string{columns.at(column).name}.c_str(), early,
                late, late / early);
  }
}

int soak(double minutes, const std::string& plotFile, std::string_view only) {
  SoakHost host;
  Sampler sampler;
  std::mt19937 random{20};
  std::array<int, acts.size()> weights{};
  for (std::size_t i = 0; i < acts.size(); ++i) {
    weights.at(i) = only.empty() || only == acts.at(i).name ? acts.at(i).weight : 0;
  }
  std::discrete_distribution<std::size_t> choose{weights.begin(), weights.end()};
  const auto end = Clock::now() + std::chrono::duration<double, std::ratio<60>>{minutes};
  const std::chrono::duration<double, std::ratio<60>> interval{minutes / 60};
  std::vector<Sample> samples;
  int rounds = 0;
  int hung = 0;
  printHead();
  for (auto next = Clock::now() + interval; Clock::now() < end;) {
    const Act& act = acts.at(choose(random));
    if (!(host.*act.run)()) {
      std::printf("%s did not end (round %d, last interstitial: %s)\n", act.name, rounds,
                  host.step().c_str());
      ++hung;
    }
    ++rounds;
    if (Clock::now() < next) continue;
    print(samples.emplace_back(sampler.take(rounds)));
    next = Clock::now() + interval;
  }
  printGrowth(samples);
  std::ofstream{plotFile} << plot(samples);
  return hung == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tavo::benchmark

int main(int count, char** arguments) {
  const std::vector<std::string> words{arguments + 1, arguments + count};
  const double minutes = words.size() < 2 ? 0 : std::atof(words[0].c_str());
  if (!(minutes > 0)) {
    std::fputs("How long, and where to? Soak MINUTES PLOT.svg [ACT]\n", stderr);
    return EXIT_FAILURE;
  }
  return tavo::benchmark::soak(minutes, words[1], words.size() > 2 ? words[2] : "");
}
