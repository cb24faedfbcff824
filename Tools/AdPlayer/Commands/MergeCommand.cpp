#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/Run/Result.h"

namespace tavo::adplayer {

namespace {

struct MergeOptions {
  std::vector<std::string> folders;
  std::string out = "merged";
};

// The results in a folder that `run` has written, in the order of their names.
std::vector<Result> resultsIn(const std::filesystem::path& folder) {
  std::vector<Result> results;
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator{folder, failure}) {
    if (!entry.is_directory(failure)) continue;
    if (auto result = Result::read(entry.path())) results.push_back(std::move(*result));
  }
  std::sort(results.begin(), results.end(),
            [](const auto& left, const auto& right) { return left.name < right.name; });
  return results;
}

int mergeAll(const MergeOptions& options) {
  std::vector<Result> all;
  double seconds = 0;
  for (const auto& folder : options.folders) {
    auto results = resultsIn(folder);
    if (results.empty()) {
      std::fprintf(stderr, "adplayer: %s holds no results of adplayer run.\n", folder.c_str());
      return wrongCall;
    }
    for (auto& result : results) {
      seconds += result.seconds;
      all.push_back(std::move(result));
    }
  }
  const std::string problem = writeReports(all, options.out, seconds);
  if (!problem.empty()) {
    std::fprintf(stderr, "adplayer: %s\n", problem.c_str());
    return wrongCall;
  }
  std::printf("%sThe report is %s/report.html.\n", tableOf(all).c_str(), options.out.c_str());
  const bool isGood = std::all_of(all.begin(), all.end(),
                                  [](const auto& one) { return one.verdict == Verdict::passed; });
  return isGood ? asExpected : notAsExpected;
}

}  // namespace

void addMergeCommand(CLI::App& program, const Surroundings& /*surroundings*/, Chosen& chosen) {
  const auto options = std::make_shared<MergeOptions>();
  auto* const command = program.add_subcommand("merge", "Join the reports of several runs");
  command->footer("Example:\n  adplayer merge shard-1 shard-2 shard-3 --out report");
  command->add_option("folder", options->folders, "Folders that adplayer run has written")
      ->required();
  command->add_option("--out", options->out, "Folder for the joint report");
  command->callback([options, &chosen] { chosen = [options] { return mergeAll(*options); }; });
}

}  // namespace tavo::adplayer
