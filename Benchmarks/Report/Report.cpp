#include "Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <utility>

#include "Machine.h"

namespace tavo::benchmarks {
namespace {

std::string quoted(const std::string& text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') json += '\\';
    json += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  return json + '"';
}

std::string printed(const char* format, double number) {
  char text[64];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

std::string member(const char* name, const std::string& json) {
  return std::string{", \""} + name + "\": " + json;
}

// JSON has no word for what is no number.
std::string number(double value) { return std::isfinite(value) ? printed("%.9g", value) : "null"; }

const char* sideOf(const Bound& bound) {
  return bound.side == Bound::Side::atMost ? "at most" : "at least";
}

// As many digits as tell something.
std::string column(double value) {
  return printed(std::abs(value) < 10 ? "%.3f" : std::abs(value) < 1000 ? "%.2f" : "%.0f", value);
}

}  // namespace

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// What could not be measured is no success.
bool Report::Row::isMet() const {
  return std::isfinite(measure) && (!bound || bound->admits(measure));
}

Report::Report(std::string benchmark) : benchmark_{std::move(benchmark)} {
  const Machine machine = thisMachine();
  std::printf(
      "%s on %s, %u cores, %s, load %.2f\n  %s; compiler %s\n%-48s %10s %10s %-3s %8s  %s\n",
      benchmark_.c_str(), machine.processor.c_str(), machine.cores, machine.kernel.c_str(),
      machine.load, machine.engines.c_str(), machine.compiler.c_str(), "", "ours", "bare", "",
      "measure", "bound");
  std::fflush(stdout);
  store(member("processor", quoted(machine.processor)) +
        member("cores", std::to_string(machine.cores)) + member("kernel", quoted(machine.kernel)) +
        member("compiler", quoted(machine.compiler)) + member("engines", quoted(machine.engines)) +
        member("date", quoted(machine.date)) + member("load", number(machine.load)));
}

void Report::ratio(const std::string& what, const std::vector<double>& ours,
                   const std::vector<double>& bare, const char* unit, std::optional<Bound> bound) {
  pair(what, ours, bare, unit, bound, false);
}

void Report::faster(const std::string& what, const std::vector<double>& ours,
                    const std::vector<double>& bare, const char* unit, std::optional<Bound> bound) {
  pair(what, ours, bare, unit, bound, true);
}

void Report::value(const std::string& what, double number, const char* unit,
                   std::optional<Bound> bound) {
  add({.what = what, .ours = {}, .bare = {}, .measure = number, .unit = unit, .bound = bound});
}

void Report::failed(const std::string& what) {
  add({.what = what,
       .ours = {},
       .bare = {},
       .measure = std::numeric_limits<double>::quiet_NaN(),
       .unit = {},
       .bound = {}});
}

void Report::pair(const std::string& what, const std::vector<double>& ours,
                  const std::vector<double>& bare, const char* unit, std::optional<Bound> bound,
                  bool isFaster) {
  const double left = median(ours);
  const double right = median(bare);
  // A time of nothing is a measurement that did not happen.
  if (left <= 0 || right <= 0) return failed(what);
  add({.what = what,
       .ours = left,
       .bare = right,
       .measure = isFaster ? right / left : left / right,
       .unit = unit,
       .bound = bound});
}

void Report::add(Row row) {
  print(row);
  store(member("row", quoted(row.what)) + (row.ours ? member("ours", number(*row.ours)) : "") +
        (row.bare ? member("bare", number(*row.bare)) : "") + member("unit", quoted(row.unit)) +
        member("measure", number(row.measure)) +
        (row.bound ? member("side", quoted(sideOf(*row.bound))) +
                         member("bound", number(row.bound->limit))
                   : "") +
        member("met", row.isMet() ? "true" : "false"));
  rows_.push_back(std::move(row));
}

void Report::print(const Row& row) {
  std::printf("%-48s %10s %10s %-3s %8s", row.what.c_str(),
              row.ours ? column(*row.ours).c_str() : "", row.bare ? column(*row.bare).c_str() : "",
              row.unit.c_str(), column(row.measure).c_str());
  if (row.bound) std::printf("  %s %g", sideOf(*row.bound), row.bound->limit);
  std::printf("%s\n", row.isMet() ? "" : "  MISSED");
  std::fflush(stdout);
}

int Report::finish() const {
  std::size_t missed = 0;
  std::printf("\n");
  for (const auto& row : rows_) {
    if (!row.bound && row.isMet()) continue;
    missed += row.isMet() ? 0 : 1;
    std::printf("%-6s %s: %s", row.isMet() ? "met" : "MISSED", row.what.c_str(),
                std::isfinite(row.measure) ? column(row.measure).c_str() : "not measured");
    if (row.bound) std::printf(", %s %g", sideOf(*row.bound), row.bound->limit);
    std::printf("\n");
  }
  std::fflush(stdout);
  return missed == 0 ? 0 : 1;
}

void Report::store(const std::string& members) const {
  const char* const file = std::getenv("TAVO_BENCHMARK_RESULTS");
  if (file == nullptr || *file == '\0') return;
  const char* const run = std::getenv("TAVO_BENCHMARK_RUN");
  std::ofstream lines{file, std::ios::app};
  lines << "{\"benchmark\": " << quoted(benchmark_)
        << member("run", std::to_string(run != nullptr ? std::atoi(run) : 1)) << members << "}\n";
  if (!lines.flush()) std::fprintf(stderr, "%s cannot be written\n", file);
}

}  // namespace tavo::benchmarks
