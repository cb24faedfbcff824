#include <algorithm>
#include <cstdio>

#include "AdPlayer/Run/Result.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

std::string secondsOf(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", seconds);
  return text;
}

std::string failureOf(const Result& result) {
  if (result.verdict == Verdict::passed) return {};
  const char* const element = result.verdict == Verdict::failed ? "failure" : "error";
  std::string text = std::string{"<"} + element + " type=\"" + std::string{nameOf(result.verdict)} +
                     "\" message=\"" + asMarkup(result.why) + "\">";
  for (const auto& one : result.expectations) {
    text += asMarkup((one.isMet ? "met:     " : "not met: ") + one.text) + "\n";
  }
  return text + "</" + element + ">";
}

}  // namespace

std::string junitReport(const std::vector<Result>& results, double seconds) {
  const auto failures = std::count_if(results.begin(), results.end(), [](const auto& one) {
    return one.verdict == Verdict::failed;
  });
  const auto errors = std::count_if(results.begin(), results.end(), [](const auto& one) {
    return one.verdict != Verdict::failed && one.verdict != Verdict::passed;
  });
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"adplayer\" tests=\"" +
      std::to_string(results.size()) + "\" failures=\"" + std::to_string(failures) +
      "\" errors=\"" + std::to_string(errors) + "\" time=\"" + secondsOf(seconds) + "\">\n";
  for (const auto& result : results) {
    xml += "  <testcase classname=\"adplayer." + asMarkup(result.placement) + "\" name=\"" +
           asMarkup(result.name) + "\" time=\"" + secondsOf(result.seconds) + "\">" +
           failureOf(result) + "</testcase>\n";
  }
  return xml + "</testsuite>\n";
}

}  // namespace tavo::adplayer
