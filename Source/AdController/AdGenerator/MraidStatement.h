#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tavo/Geometry.h>

namespace tavo {

// One JavaScript statement with texts of unknown origin put into it.
struct MraidStatement {
  std::string text;
  // False when a text put in could end the literal around it and go on as a script of its own.
  bool isSafe = true;

  // `format` with each "%@" replaced by the next of `values`, taken as they are; a "%@" without a
  // value reads "(null)".
  [[nodiscard]] static MraidStatement make(std::string_view format,
                                           const std::vector<std::string_view>& values);
};

// `number` rounded to a whole one, as "%.0f" prints it. Not-a-number is written as 0 and infinity
// as the largest number, for the script's sake.
[[nodiscard]] std::string wholeNumber(double number);

// "width:320,height:50" and "x:0,y:0,width:320,height:50".
[[nodiscard]] std::string members(const Size& size);
[[nodiscard]] std::string members(const Rect& rect);

}  // namespace tavo
