#pragma once

#include <functional>

#include <tavo/Error.h>

#include "AdController/AdGenerator/MraidParameters.h"

namespace tavo {

// Saves the pictures that one creative offers. Whoever drops it takes its unanswered questions and
// its downloads back. Main thread only.
class PictureSaver {
 public:
  // What went wrong, for the creative; there is no report of success.
  using Failed = std::function<void(const Error&)>;

  virtual ~PictureSaver() = default;

  // Starts with the picture under "url" among the command's parameters.
  virtual void storePicture(const MraidParameters& parameters) = 0;
};

}  // namespace tavo
