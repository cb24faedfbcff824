#include "AdController/AdGenerator/MraidStatement.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::string_view lineSeparator = "\xE2\x80\xA8";       // U+2028 in UTF-8
constexpr std::string_view paragraphSeparator = "\xE2\x80\xA9";  // U+2029

// Texts stand between single quotes, so a double quote does no harm. A NUL would end the whole
// statement on its way through interfaces of C.
bool staysInsideItsLiteral(std::string_view text) {
  constexpr std::string_view breakers{"'\\\n\r\0", 5};
  return text.find_first_of(breakers) == std::string_view::npos && !contains(text, lineSeparator) &&
         !contains(text, paragraphSeparator);
}

}  // namespace

MraidStatement MraidStatement::make(std::string_view format,
                                    const std::vector<std::string_view>& values) {
  MraidStatement statement;
  auto value = values.begin();
  for (auto hole = format.find("%@"); hole != std::string_view::npos; hole = format.find("%@")) {
    statement.text.append(format.substr(0, hole));
    statement.text.append(value == values.end() ? "(null)" : *value++);
    format.remove_prefix(hole + 2);
  }
  statement.text.append(format);
  statement.isSafe = std::all_of(values.begin(), values.end(), staysInsideItsLiteral);
  return statement;
}

std::string wholeNumber(double number) {
  constexpr double largest = std::numeric_limits<double>::max();
  const double finite = std::isnan(number) ? 0 : std::clamp(number, -largest, largest);
  std::string text(std::numeric_limits<double>::max_exponent10 + 3, '\0');
  const int length = std::snprintf(text.data(), text.size(), "%.0f", finite);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::string members(const Size& size) {
  return "width:" + wholeNumber(size.width) + ",height:" + wholeNumber(size.height);
}

std::string members(const Rect& rect) {
  return "x:" + wholeNumber(rect.x) + ",y:" + wholeNumber(rect.y) + "," + members(rect.size());
}

}  // namespace tavo
