#pragma once

#include <memory>

#include <tavo/Export.h>
#include <tavo/MoviePlayer.h>

namespace tavo {

// Makes movie players. Main thread only.
class TAVO_EXPORT MoviePlayerFactory {
 public:
  virtual ~MoviePlayerFactory() = default;

  // Never null. Where no video can be played, every content finishes with MovieError::unavailable;
  // the host is never at risk.
  [[nodiscard]] virtual std::shared_ptr<MoviePlayer> create(const Rect& frame) = 0;

  // Loads what the first player needs ahead of it; harmless when repeated.
  virtual void warmUp() = 0;
};

}  // namespace tavo
