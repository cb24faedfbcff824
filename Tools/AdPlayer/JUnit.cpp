#include "AdPlayer/JUnit.h"

#include <algorithm>
#include <cstdio>

#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

std::string attribute(const char* name, const std::string& value) {
  return std::string{" "} + name + "=\"" + asMarkup(value) + "\"";
}

std::string timeAttribute(const std::optional<double>& seconds) {
  if (!seconds) return {};
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", *seconds);
  return attribute("time", text);
}

std::string troubleText(const JUnitTrouble& trouble) {
  const std::string element = trouble.isError ? "error" : "failure";
  return "<" + element + attribute("type", trouble.type) + attribute("message", trouble.message) +
         ">" + asMarkup(trouble.text) + "</" + element + ">";
}

std::string caseText(const JUnitCase& one) {
  const std::string start = "    <testcase" + attribute("classname", one.classname) +
                            attribute("name", one.name) + timeAttribute(one.seconds);
  return start + (one.trouble ? ">" + troubleText(*one.trouble) + "</testcase>\n" : "/>\n");
}

std::string suiteText(const JUnitSuite& suite) {
  const auto count = [&](bool isError) {
    return std::to_string(std::count_if(
        suite.cases.begin(), suite.cases.end(),
        [isError](const auto& one) { return one.trouble && one.trouble->isError == isError; }));
  };
  std::string text = "  <testsuite" + attribute("name", suite.name) +
                     attribute("tests", std::to_string(suite.cases.size())) +
                     attribute("failures", count(false)) + attribute("errors", count(true)) +
                     timeAttribute(suite.seconds) + ">\n";
  for (const auto& one : suite.cases) text += caseText(one);
  return text + "  </testsuite>\n";
}

}  // namespace

std::string junitDocument(const std::vector<JUnitSuite>& suites) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
  for (const auto& suite : suites) text += suiteText(suite);
  return text + "</testsuites>\n";
}

}  // namespace tavo::adplayer
