#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <set>
#include <stdexcept>

#include "AdPlayer/Commands/Command.h"
#include "AdPlayer/Commands/PlayOptions.h"
#include "AdPlayer/MraidChecklist/MraidChecklist.h"
#include "AdPlayer/MraidChecklist/RunMraidChecklist.h"
#include "AdPlayer/Run/Board.h"

namespace tavo::adplayer {

namespace {

struct RunOptions {
  Surroundings surroundings;
  PlayOptions play;
  std::vector<std::string> sources;
  std::string out = "out";
  std::string shard;
  int jobs = 1;
  double timeout = 180;
  bool samples = false;
  bool checklist = false;
  bool onScreen = false;
};

constexpr const char* examples =
    "Examples:\n"
    "  adplayer run banner.html\n"
    "  adplayer run https://example.com/vast.xml --placement preroll\n"
    "  adplayer run ads.example.com/delivery --page news/front --position Top\n"
    "  adplayer run creatives/*.html --jobs 4 --out report\n"
    "  adplayer run creatives/*.html --shard 2/8 --out shard-2\n"
    "  adplayer run banner.html --scenario taps.txt\n"
    "  adplayer run --samples --checklist --jobs 4\n"
    "\nIn the folder of --out: report.html, junit.xml, events.jsonl, and for each creative a "
    "folder\n"
    "with its pictures, events and result. Status 0: all as expected; 1: not; 2: a wrong call.";

// A name for a folder that says what it is of, and is not taken.
std::string folderName(const std::string& source, std::set<std::string>& taken) {
  std::string name;
  const auto slash = source.find_last_not_of('/');
  const std::string whole = source.substr(0, slash == std::string::npos ? 0 : slash + 1);
  const auto start = whole.find_last_of('/');
  for (const char letter : whole.substr(start == std::string::npos ? 0 : start + 1)) {
    const auto code = static_cast<unsigned char>(letter);
    name +=
        std::isalnum(code) != 0 || letter == '-' || letter == '_' || letter == '.' ? letter : '-';
  }
  name = name.substr(0, 60);
  if (name.empty() || name.front() == '.') name = "creative" + name;
  std::string free = name;
  for (int number = 2; !taken.insert(free).second; ++number)
    free = name + "-" + std::to_string(number);
  return free;
}

// Takes every N-th, beginning with the I-th of "I/N".
bool takeShard(const std::string& shard, std::vector<Job>& jobs) {
  unsigned index = 0;
  unsigned count = 0;
  char rest = 0;
  if (std::sscanf(shard.c_str(), "%u/%u%c", &index, &count, &rest) != 2 || index < 1 ||
      index > count) {
    return false;
  }
  std::vector<Job> mine;
  for (std::size_t at = index - 1; at < jobs.size(); at += count) mine.push_back(jobs[at]);
  jobs = std::move(mine);
  return true;
}

// Each creative of the checklist, without the standards mode and in it.
void addChecklist(const RunOptions& options, std::set<std::string>& taken, std::vector<Job>& jobs) {
  for (const auto creative : mraidCreatives()) {
    for (const bool standards : {false, true}) {
      MraidChecklistOptions checklist;
      checklist.standards = standards;
      checklist.only = creative;
      Job job;
      job.name = folderName(mraidResultName(checklist), taken);
      job.source = "mraid";
      job.folder = std::filesystem::path{options.out} / job.name;
      job.command = {options.surroundings.program, "mraid", "--on-screen",
                     "--creative=" + checklist.only, "--result=" + job.folder.string()};
      if (standards) job.command.emplace_back("--standards");
      jobs.push_back(std::move(job));
    }
  }
}

std::vector<Job> jobsFor(const RunOptions& options) {
  std::vector<Job> jobs;
  std::set<std::string> taken;
  if (options.checklist) addChecklist(options, taken, jobs);
  for (const auto& source : options.sources) {
    Job job;
    job.name = folderName(source, taken);
    job.source = source;
    job.folder = std::filesystem::path{options.out} / job.name;
    job.command = {options.surroundings.program, "play-one", "--out=" + job.folder.string(),
                   "--name=" + job.name};
    for (auto& word : options.play.arguments()) job.command.push_back(std::move(word));
    job.command.insert(job.command.end(), {"--", source});
    jobs.push_back(std::move(job));
  }
  return jobs;
}

void tell(const Result& result, std::size_t done, std::size_t all) {
  const std::string verdict{nameOf(result.verdict)};
  const std::string& told = result.verdict == Verdict::passed ? result.classification : result.why;
  std::FILE* const to = result.verdict == Verdict::refused ? stderr : stdout;
  std::fprintf(to, "[%zu/%zu] %s: %s%s%s (%.1f s)\n", done, all, result.name.c_str(),
               verdict.c_str(), told.empty() ? "" : ", ", told.c_str(), result.seconds);
  std::fflush(to);
}

int fail(const std::string& line) {
  std::fprintf(stderr, "adplayer: %s\n", line.c_str());
  return wrongCall;
}

int runAll(RunOptions options) {
  if (options.samples) {
    for (auto& name : campaignNames(options.play.campaigns)) options.sources.push_back(name);
  }
  if (options.sources.empty() && !options.checklist)
    return fail("Nothing to play was named; see adplayer run --help.");
  if (options.samples && !options.play.placement.empty()) {
    return fail("Sample campaigns have placements of their own: leave --placement out.");
  }
  const auto steps = options.play.steps();
  if (const auto* mistake = std::get_if<ScenarioMistake>(&steps)) return fail(mistake->text);
  auto jobs = jobsFor(options);
  if (!options.shard.empty() && !takeShard(options.shard, jobs)) {
    return fail("--shard: expected I/N with I from 1 to N, such as 2/8, not \"" + options.shard +
                "\".");
  }
  const auto start = std::chrono::steady_clock::now();
  const auto results = playAll(jobs, {.jobs = options.jobs,
                                      .timeout = options.timeout,
                                      .ownScreens = !options.onScreen,
                                      .progress = tell});
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (results.size() == 1 && results.front().verdict == Verdict::refused) return wrongCall;
  const std::string problem = writeReports(results, options.out, seconds);
  std::printf("\n%s", tableOf(results).c_str());
  if (!problem.empty()) return fail(problem);
  std::printf("The report is %s/report.html.\n", options.out.c_str());
  const bool isGood = results.size() == jobs.size() &&
                      std::all_of(results.begin(), results.end(),
                                  [](const auto& one) { return one.verdict == Verdict::passed; });
  return isGood ? asExpected : notAsExpected;
}

}  // namespace

void addRunCommand(CLI::App& program, const Surroundings& surroundings, Chosen& chosen) {
  const auto options = std::make_shared<RunOptions>();
  options->surroundings = surroundings;
  options->play.take(surroundings);
  auto* const command =
      program.add_subcommand("run", "Play creatives without a window and report what they did");
  command->footer(examples);
  addSources(*command, options->sources);
  command->add_flag("--samples", options->samples, "Play every sample campaign");
  command->add_flag("--checklist", options->checklist,
                    "Play the checklist of MRAID 2.0, without and in the standards mode");
  command->add_option("--out", options->out, "Folder for the reports");
  command->add_option("--jobs", options->jobs, "How many at the same time")
      ->check(CLI::Range(1, 256));
  command->add_option("--shard", options->shard, "Play only every N-th, from the I-th on: I/N");
  command->add_option("--timeout", options->timeout, "Seconds for one creative")
      ->check(CLI::Range(1, 36'000));
  command->add_flag("--on-screen", options->onScreen, "Play on the screen that there is");
  options->play.addTo(*command);
  command->callback([options, &chosen] {
    chosen = [options] {
      try {
        return runAll(*options);
      } catch (const std::runtime_error& failure) {
        return fail(failure.what());
      }
    };
  });
}

}  // namespace tavo::adplayer
