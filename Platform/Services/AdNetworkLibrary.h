#pragma once

#include <string>

namespace tavo {

// The shared library of an external ad network, where the host has configured one.
class AdNetworkLibrary {
 public:
  virtual ~AdNetworkLibrary() = default;

  // The address of what the library exports under `name`; null when no library is configured, when
  // it cannot be loaded or when it exports no such thing. Loads the library on the first call, once
  // per process run; it then stays, for its code may be behind objects that outlive everybody's
  // interest. What goes wrong is written to the platform's log. Main thread only.
  [[nodiscard]] virtual void* find(const std::string& name) = 0;
};

}  // namespace tavo
