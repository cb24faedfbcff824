#pragma once

#include <cstdint>

namespace tavo {

// Settings reserved for fetching ads ahead of their time. A host may keep them; nothing in the
// library reads them yet.
struct XPrefetchConfiguration {
  std::int32_t numberOfAdsToPrefetch = 0;
  bool bannerPrefetchRequired = false;
};

}  // namespace tavo
