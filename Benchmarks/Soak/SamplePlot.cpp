#include "SamplePlot.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace tavo::benchmark {

namespace {

constexpr double width = 720;
constexpr double height = 110;  // of one curve
constexpr double margin = 90;

[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...) {
  std::array<char, 512> buffer{};
  va_list values;
  va_start(values, format);
  std::vsnprintf(buffer.data(), buffer.size(), format, values);
  va_end(values);
  return buffer.data();
}

std::string curve(const std::vector<Sample>& samples, const Column& column, double top) {
  double most = 1;
  for (const Sample& sample : samples) most = std::max(most, sample.*column.value);
  const double end = std::max(samples.back().minutes, 0.01);
  const double bottom = top + height - 24;
  std::string points;
  for (const Sample& sample : samples) {
    points += text("%.1f,%.1f ", margin + sample.minutes / end * (width - margin - 16),
                   bottom - sample.*column.value / most * (height - 44));
  }
  return text(
             R"(<text x="8" y="%.0f">%s</text><text x="8" y="%.0f" fill="#777">%.1f at most</text>)"
             "\n",
             top + 34, std::string{column.name}.c_str(), top + 52, most) +
         text(R"(<path d="M%.0f %.0fH%.0f" stroke="#bbb"/>)", margin, bottom, width - 16) +
         R"(<polyline fill="none" stroke="#1565c0" stroke-width="1.6" points=")" + points +
         "\"/>\n";
}

}  // namespace

std::string plot(const std::vector<Sample>& samples) {
  if (samples.empty()) return {};
  const double all = height * static_cast<double>(columns.size() - firstMeasured) + 30;
  std::string picture = text(
      R"(<svg xmlns="http://www.w3.org/2000/svg" width="%.0f" height="%.0f" )"
      R"(font-family="sans-serif" font-size="12"><rect width="100%%" height="100%%" fill="#fff"/>)"
      "\n",
      width, all);
  double top = 0;
  for (std::size_t column = firstMeasured; column < columns.size(); ++column, top += height) {
    picture += curve(samples, columns.at(column), top);
  }
  picture += text(R"(<text x="%.0f" y="%.0f" fill="#777">%.1f minutes, %.0f rounds</text></svg>)"
                  "\n",
                  margin, all - 10, samples.back().minutes, samples.back().rounds);
  return picture;
}

}  // namespace tavo::benchmark
