#pragma once

#include <cstdint>
#include <map>
#include <optional>

namespace tavo::gtk {

// What has arrived so far at each TCP socket of a process, by the number of the socket. Nothing
// where the system does not say.
[[nodiscard]] std::optional<std::map<std::uint64_t, std::uint64_t>> bytesReceivedBy(int process);

}  // namespace tavo::gtk
