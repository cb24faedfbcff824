#pragma once

#include <memory>

#include "Runtime/Environment.h"

namespace tavo {

// Of the newest runtime; and when the last one has ended, its own, as long as a view lives in it:
// what is on its way then arrives, and the view goes quietly. Without either the process ends with
// a message that says what to do. Never null. Any thread.
[[nodiscard]] std::shared_ptr<Environment> livingEnvironment();

}  // namespace tavo
