#include "AdPlayer/Run/Board.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <thread>

#include "AdPlayer/Run/VirtualScreen.h"

namespace tavo::adplayer {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds boardTick{20};

volatile std::sig_atomic_t interrupted = 0;
void interrupt(int /*signal*/) { interrupted = 1; }

[[noreturn]] void becomeJob(const Job& job, const std::string& display) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setsid();
  const std::string log = (job.folder / "player.log").string();
  const int file = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (file >= 0) {
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
  }
  if (!display.empty()) VirtualScreen::use(display);
  std::vector<char*> arguments;
  for (const auto& word : job.command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  execv(arguments.front(), arguments.data());
  _exit(127);
}

// What stands there when its process could not say it itself.
Result resultWithout(const Job& job, Verdict verdict, std::string why, double seconds) {
  Result result;
  result.name = job.name;
  result.source = job.source;
  result.folder = job.folder;
  result.verdict = verdict;
  result.why = std::move(why);
  result.seconds = seconds;
  result.events = Result::readEvents(job.folder);
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator{job.folder, failure}) {
    if (entry.path().extension() == ".png") {
      result.pictures.push_back(entry.path().filename().string());
    }
  }
  std::ofstream{job.folder / "result.json"} << result.toJson();
  return result;
}

std::string howItEnded(int status) {
  if (WIFSIGNALED(status)) {
    const char* name = strsignal(WTERMSIG(status));
    return std::string{"Its process died: "} + (name == nullptr ? "a signal" : name) + ".";
  }
  return "Its process ended with status " + std::to_string(WEXITSTATUS(status)) +
         " and left no result; player.log has its last words.";
}

class Board {
 public:
  Board(const std::vector<Job>& jobs, const BoardOptions& options)
      : jobs_{jobs}, options_{options}, results_(jobs.size()) {
    const auto places = std::min(jobs.size(), static_cast<std::size_t>(std::max(options.jobs, 1)));
    for (std::size_t i = 0; i < places; ++i) {
      places_.emplace_back();
      if (options.ownScreens) places_.back().screen = std::make_unique<VirtualScreen>();
    }
  }

  std::vector<Result> play() {
    while (step()) std::this_thread::sleep_for(boardTick);
    std::vector<Result> results;
    for (auto& result : results_) {
      if (result) results.push_back(std::move(*result));
    }
    return results;
  }

 private:
  struct Place {
    std::unique_ptr<VirtualScreen> screen{};
    pid_t process = 0;  // 0: free
    std::size_t job = 0;
    Clock::time_point start{};
  };

  // False when nothing is left to do.
  bool step() {
    bool busy = false;
    for (auto& place : places_) {
      if (place.process != 0) look(place);
      if (place.process == 0 && next_ < jobs_.size() && interrupted == 0) begin(place);
      busy = busy || place.process != 0;
    }
    return busy;
  }

  void begin(Place& place) {
    place.job = next_++;
    place.start = Clock::now();
    const Job& job = jobs_[place.job];
    std::error_code failure;
    std::filesystem::remove_all(job.folder, failure);
    std::filesystem::create_directories(job.folder, failure);
    const std::string display = place.screen ? place.screen->display() : std::string{};
    place.process = fork();
    if (place.process == 0) becomeJob(job, display);
  }

  void look(Place& place) {
    int status = 0;
    const double seconds = std::chrono::duration<double>(Clock::now() - place.start).count();
    const bool hasEnded = waitpid(place.process, &status, WNOHANG) == place.process;
    const bool isLate = seconds > options_.timeout;
    if (!hasEnded && !isLate && interrupted == 0) return;
    const Job& job = jobs_[place.job];
    std::optional<Result> result;
    if (hasEnded) {
      result = Result::read(job.folder);
      if (!result) result = resultWithout(job, Verdict::crashed, howItEnded(status), seconds);
    } else {
      kill(-place.process, SIGKILL);
      waitpid(place.process, nullptr, 0);
      const std::string why = isLate ? "It had no end within " +
                                           std::to_string(static_cast<int>(options_.timeout)) +
                                           " s and was ended."
                                     : "Interrupted.";
      result = resultWithout(job, Verdict::hung, why, seconds);
    }
    place.process = 0;
    results_[place.job] = std::move(result);
    if (options_.progress) options_.progress(*results_[place.job], ++done_, jobs_.size());
  }

  const std::vector<Job>& jobs_;
  const BoardOptions& options_;
  std::vector<Place> places_;
  std::vector<std::optional<Result>> results_;
  std::size_t next_ = 0;
  std::size_t done_ = 0;
};

}  // namespace

std::vector<Result> playAll(const std::vector<Job>& jobs, const BoardOptions& options) {
  interrupted = 0;
  constexpr std::array ends{SIGINT, SIGTERM, SIGHUP};
  std::array<void (*)(int), ends.size()> before{};
  for (std::size_t at = 0; at < ends.size(); ++at) before[at] = std::signal(ends[at], interrupt);
  auto results = Board{jobs, options}.play();
  for (std::size_t at = 0; at < ends.size(); ++at) std::signal(ends[at], before[at]);
  return results;
}

}  // namespace tavo::adplayer
