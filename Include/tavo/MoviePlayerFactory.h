#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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

  // Calls `found` with those of the MIME types (as "video/webm") that can be decoded here: once,
  // inside this call or when it is known. A factory that does not say otherwise plays MP4.
  virtual void findPlayable(std::vector<std::string> types,
                            std::function<void(const std::vector<std::string>&)> found) {
    std::erase_if(types, [](const std::string& type) { return type != "video/mp4"; });
    const auto tell = std::move(found);
    tell(types);
  }

  // Loads what the first player needs ahead of it; harmless when repeated.
  virtual void warmUp() = 0;
};

}  // namespace tavo
