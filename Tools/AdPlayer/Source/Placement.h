#pragma once

#include <string>

#include <tavo/Geometry.h>

#include "AdServer/Campaign.h"

namespace tavo::adplayer {

using adserver::Placement;

// What to ask which server for, and the slot that fits.
struct PlayPlan {
  std::string title{};   // for people
  std::string domain{};  // host and delivery path, without scheme
  std::string page{};
  std::string position{};
  std::string keywords{};
  std::string query{};
  Placement placement = Placement::banner;
  Size size{320, 50};
  bool standards = false;       // the slot is in its standards mode
  std::string scenario{};       // text of the steps that belong to what is played; empty: none
  std::string scenarioPlace{};  // where that text stands, for what is said about it
};

}  // namespace tavo::adplayer
