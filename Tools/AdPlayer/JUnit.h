#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavo::adplayer {

// What was not as it should be: "failure" for what was looked at, "error" for what could not be.
struct JUnitTrouble {
  bool isError = false;
  std::string type{};
  std::string message{};
  std::string text{};  // lines
};

struct JUnitCase {
  std::string classname{};
  std::string name{};
  std::optional<double> seconds{};
  std::optional<JUnitTrouble> trouble{};
};

struct JUnitSuite {
  std::string name{};
  std::optional<double> seconds{};
  std::vector<JUnitCase> cases{};
};

// The XML that CI systems read.
[[nodiscard]] std::string junitDocument(const std::vector<JUnitSuite>& suites);

}  // namespace tavo::adplayer
