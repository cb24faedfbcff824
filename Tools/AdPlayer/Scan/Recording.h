#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Geometry.h>
#include <tavo/Inspection.h>
#include <tavo/TrackingLedger.h>

#include "AdServer/Campaign.h"

namespace tavo::adplayer {

// How light the slot was at one moment, over a grid of `Recording::cells` places.
struct Light {
  Seconds time{};
  std::vector<float> luminance{};  // relative, 0 to 1
};

// All that was seen while one creative was played and nobody touched it. What the checks look at.
struct Recording {
  static constexpr int cells = 12;  // a side of the grid

  std::string name{};       // as it was given
  std::string variation{};  // what was changed for this play; empty: nothing
  adserver::Placement placement = adserver::Placement::banner;
  Size size{};  // of the slot, points
  std::string
      server{};  // "http://host:port" of the server in front of the creative, when it is ours

  // Times count from the request of the ad.
  std::vector<InspectionEvent> events{};
  std::vector<PingRecord> pings{};  // in their last state; `due` is not used
  std::vector<Light> lights{};
  std::optional<Seconds> loaded{};  // when the host heard that the ad is there
  std::string failure{};            // what the host heard instead
  Seconds length{};
  Seconds processorTime{};  // of the engine's processes

  std::vector<Recording> again{};  // the same creative, played under other conditions
};

// The events of a kind, in order.
[[nodiscard]] std::vector<const InspectionEvent*> eventsOf(const Recording& recording,
                                                           InspectionKind kind);

// "host:port" of an address of http(s); empty for others.
[[nodiscard]] std::string hostOf(std::string_view url);

// Whether the address is of the server that only stands in front of the creative.
[[nodiscard]] bool isOwn(const Recording& recording, std::string_view url);

}  // namespace tavo::adplayer
