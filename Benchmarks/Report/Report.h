#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavo::benchmarks {

// What a measure may be.
struct Bound {
  enum class Side { atMost, atLeast };
  Side side = Side::atMost;
  double limit = 0;

  [[nodiscard]] bool admits(double measure) const {
    return side == Side::atMost ? measure <= limit : measure >= limit;
  }
};
[[nodiscard]] constexpr Bound atMost(double limit) { return {Bound::Side::atMost, limit}; }
[[nodiscard]] constexpr Bound atLeast(double limit) { return {Bound::Side::atLeast, limit}; }

// The upper of the two in the middle of an even number; 0 of none.
[[nodiscard]] double median(std::vector<double> values);

// What a benchmark program has to say. It prints the machine, then each row as it is measured, and
// at the end one line for each bound. Every program makes one, in the process that it was started
// as, and returns from `main` what `finish` answers.
//
// A row is a measure with a bound. Rows are known by their names from one run to the next, so a
// name changes only with what is measured.
//
// Where the environment variable TAVO_BENCHMARK_RESULTS names a file, machine and rows are added to
// it as lines of JSON, with the number of the run in TAVO_BENCHMARK_RUN. Benchmarks/run does this.
class Report {
 public:
  explicit Report(std::string benchmark);
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  // The median of our way beside that of the bare one. The measure is ours / bare.
  void ratio(const std::string& what, const std::vector<double>& ours,
             const std::vector<double>& bare, const char* unit, std::optional<Bound> bound);
  // The same with the measure bare / ours: how many times faster we are.
  void faster(const std::string& what, const std::vector<double>& ours,
              const std::vector<double>& bare, const char* unit, std::optional<Bound> bound);
  // A number that is a measure by itself.
  void value(const std::string& what, double number, const char* unit, std::optional<Bound> bound);

  // Something could not be measured; the program goes on, and its status tells.
  void failed(const std::string& what);

  // Prints the bounds. 0 when all were met, 1 otherwise.
  [[nodiscard]] int finish() const;

 private:
  struct Row {
    std::string what;
    std::optional<double> ours;
    std::optional<double> bare;
    double measure = 0;
    std::string unit;
    std::optional<Bound> bound;
    [[nodiscard]] bool isMet() const;
  };

  void pair(const std::string& what, const std::vector<double>& ours,
            const std::vector<double>& bare, const char* unit, std::optional<Bound> bound,
            bool isFaster);
  void add(Row row);
  static void print(const Row& row);
  void store(const std::string& members) const;

  const std::string benchmark_;
  std::vector<Row> rows_;
};

}  // namespace tavo::benchmarks
