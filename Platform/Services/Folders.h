#pragma once

#include <string>
#include <vector>

namespace tavo {

// Where the application keeps its files. Any thread.
class Folders {
 public:
  virtual ~Folders() = default;

  // The folders for the user's documents, without a slash at the end, the one to write to last.
  // They exist, unless they could not be made. Empty where the platform has no such place.
  [[nodiscard]] virtual std::vector<std::string> documentFolders() const = 0;
};

}  // namespace tavo
