#pragma once

#include <chrono>
#include <functional>

namespace tavo::test {

// Turns the host's loop until `done`, or for far longer than anything here takes; returns whether
// it is done.
bool runUntil(const std::function<bool()>& done,
              std::chrono::seconds patience = std::chrono::seconds{60});

}  // namespace tavo::test
