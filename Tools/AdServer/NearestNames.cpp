#include "AdServer/NearestNames.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tavo::adserver {

namespace {

// The number of letters to add, drop or change to get from one text to the other.
std::size_t editDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    auto corner = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < to.size(); ++j) {
      const auto change = corner + (from[i] == to[j] ? 0U : 1U);
      corner = std::exchange(row[j + 1], std::min({row[j] + 1, row[j + 1] + 1, change}));
    }
  }
  return row.back();
}

using Ranked = std::vector<std::pair<std::size_t, std::string_view>>;

Ranked ranked(std::string_view word, const std::vector<std::string>& known) {
  Ranked near;
  for (const auto& name : known) near.emplace_back(editDistance(word, name), name);
  std::sort(near.begin(), near.end());
  return near;
}

}  // namespace

std::string nearestName(std::string_view word, const std::vector<std::string>& known) {
  const auto near = ranked(word, known);
  // More than that is another word.
  const bool isNear = !near.empty() && near.front().first < word.size() / 3 + 2;
  return isNear ? std::string{near.front().second} : std::string{};
}

std::string nearestNames(std::string_view word, const std::vector<std::string>& known) {
  std::string text;
  const auto near = ranked(word, known);
  for (std::size_t at = 0; at < std::min<std::size_t>(near.size(), 3); ++at) {
    text += (at == 0 ? "" : ", ") + std::string{near[at].second};
  }
  return text;
}

}  // namespace tavo::adserver
