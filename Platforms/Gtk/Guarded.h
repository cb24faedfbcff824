#pragma once

#include <glib.h>

#include <exception>
#include <utility>

namespace tavo::gtk {

// Writes down that a callback ended in an exception. It goes straight to the system's log: a text
// of our own would need memory, which may be what is missing.
inline void noteException(const char* what) noexcept {
  g_log("CorvaneTAVOSDK", G_LOG_LEVEL_WARNING, "A callback ended in an exception: %s",
        what == nullptr ? "of an unknown kind" : what);
}

// Calls `task` for a C library or a toolkit, which no exception may cross: it would end the host.
// One that comes out ends the task alone, and its result is then what its type is without a value.
template <typename Task>
auto guarded(Task&& task) noexcept -> decltype(task()) {
  try {
    return task();
  } catch (const std::exception& exception) {
    noteException(exception.what());
  } catch (...) {
    noteException(nullptr);
  }
  return decltype(task())();
}

template <auto callback>
struct Fence;

template <typename Result, typename... Arguments, Result (*callback)(Arguments...)>
struct Fence<callback> {
  static Result call(Arguments... arguments) noexcept {
    return guarded([&]() -> Result { return callback(arguments...); });
  }
};

// `callback` as a C library may call it: `g_signal_connect(..., G_CALLBACK(fenced<&changed>),
// ...)`.
template <auto callback>
inline constexpr auto fenced = &Fence<callback>::call;

// The same for a slot of the toolkit's C++ interface, which ends the program for an exception:
// `signal_clicked().connect(guardedSlot([this] { pressed(); }))`.
template <typename Task>
auto guardedSlot(Task task) {
  return [task = std::move(task)](auto... arguments) mutable {
    return guarded([&] { return task(arguments...); });
  };
}

}  // namespace tavo::gtk
