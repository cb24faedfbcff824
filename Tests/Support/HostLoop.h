#pragma once

#include <functional>

namespace tavo::test {

// Turns the host's loop until `done`, or for far longer than anything here takes; returns whether
// it is done.
bool runUntil(const std::function<bool()>& done);

}  // namespace tavo::test
