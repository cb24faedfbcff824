#pragma once

#include <tavo/MobileAdTypes.h>

namespace tavo {

// What decides whether the banner's refresh timer runs.
struct RefreshFacts {
  bool visible = false;
  MobileAdTypes type = MobileAdTypes::banner;
  MobileAdSubTypes subType = MobileAdSubTypes::unknown;
  bool deviceLocked = false;
  float interval = 0;  // seconds
  bool timerFired = false;
  bool firstAdRequest = true;
};

// False: a running timer is stopped. A negative interval stops nothing.
[[nodiscard]] bool mayKeepRefreshing(const RefreshFacts& facts);

// True: a new timer is started, even while another one runs. A negative interval starts none.
[[nodiscard]] bool mustArmRefresh(const RefreshFacts& facts);

}  // namespace tavo
