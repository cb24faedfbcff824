#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavo {

// Small values that the elements of a VAST document (2.0 to 4.2) are made of. Addresses are kept as
// texts: absolute, with their macros ("[ERRORCODE]") in place.

// A place in a film: a number of seconds, or a part of its length.
struct VastOffset {
  double value = 0;     // seconds, or 0 to 1; never negative
  bool isPart = false;  // of the length
  [[nodiscard]] double seconds(double duration) const { return isPart ? value * duration : value; }
  friend bool operator==(const VastOffset&, const VastOffset&) = default;
};

// An address that wants to hear of an event.
struct VastTracking {
  std::string event;                 // as in the document: "start", "progress"
  std::optional<VastOffset> offset;  // of "progress"
  std::string url;
  friend bool operator==(const VastTracking&, const VastTracking&) = default;
};

// What a companion or an icon consists of. One of them has several in the order of preference.
struct VastResource {
  enum class Kind { picture, html, frame };  // an address, a text, the address of a page
  Kind kind = Kind::picture;
  std::string content;
  std::string type;  // of a picture, as "image/png"; may be empty
  friend bool operator==(const VastResource&, const VastResource&) = default;
};

// What a click leads to, and who hears of it.
struct VastClick {
  std::string through;  // empty: nothing to open
  std::vector<std::string> tracking;
  friend bool operator==(const VastClick&, const VastClick&) = default;
};

}  // namespace tavo
