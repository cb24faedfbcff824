#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <tavo/Error.h>

namespace sample {

// What the network has to say to a request: nothing when it has an ad, else why it has none. A
// placement named "no-fill" never has an ad, one named "error" always has an accident.
[[nodiscard]] std::optional<tavo::Error> refusalOf(const std::string& placementId);

// Runs the task from the main loop, a moment from now, unless `life` has ended by then.
void later(const std::weak_ptr<void>& life, std::function<void()> task);

// Opens the network's site outside the application.
void openSite();

}  // namespace sample
