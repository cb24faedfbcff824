#pragma once

#include <string>

namespace simdjson::dom {
class element;
}  // namespace simdjson::dom

namespace tavo {

// The text form of a JSON value, as the ad server's other clients print it.
//
// A string is itself. An integer keeps its digits. Another number is written with the fewest digits
// that read back as the same number, in plain form from 0.0001 to 1e16 and otherwise as 1e+20. True
// and false are 1 and 0, null is "(null)". Arrays and objects are laid out over several lines:
//
//   (              {
//       1,             key = value;
//       two            "other key" =     (
//   )                      1
//                      );
//                  }
//
// Members of an object stand in the order of their keys. Inside, a text is quoted unless it is made
// of ASCII letters and digits only, and null is "<null>".
[[nodiscard]] std::string jsonText(const simdjson::dom::element& value);

}  // namespace tavo
