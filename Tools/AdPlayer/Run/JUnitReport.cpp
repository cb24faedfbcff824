#include "AdPlayer/JUnit.h"
#include "AdPlayer/Run/Result.h"

namespace tavo::adplayer {

namespace {

std::optional<JUnitTrouble> troubleOf(const Result& result) {
  if (result.verdict == Verdict::passed) return std::nullopt;
  JUnitTrouble trouble{.isError = result.verdict != Verdict::failed,
                       .type = std::string{nameOf(result.verdict)},
                       .message = result.why};
  for (const auto& one : result.expectations) {
    trouble.text += (one.isMet ? "met:     " : "not met: ") + one.text + "\n";
  }
  return trouble;
}

}  // namespace

std::string junitReport(const std::vector<Result>& results, double seconds) {
  JUnitSuite suite{.name = "adplayer", .seconds = seconds};
  for (const auto& result : results) {
    suite.cases.push_back({.classname = "adplayer." + result.placement,
                           .name = result.name,
                           .seconds = result.seconds,
                           .trouble = troubleOf(result)});
  }
  return junitDocument({suite});
}

}  // namespace tavo::adplayer
