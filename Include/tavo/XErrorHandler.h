#pragma once

#include <string>

namespace tavo {

// Puts errors of the host's into a small store on disk. The library itself never writes there.
class XErrorHandler {
 public:
  // Adds an entry with the time of now and stores it before it returns. Any thread. A store that
  // cannot be opened or written is a FatalFailure, which ends the process after saying why.
  static void addErrorWithErrorId(const std::string& errorId, const std::string& errorDescription);
};

}  // namespace tavo
