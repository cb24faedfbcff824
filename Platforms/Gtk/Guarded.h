#pragma once

#include <glib.h>

#include <exception>

namespace tavo::gtk {

// Writes down that a callback ended in an exception. It goes straight to the system's log: a text
// of our own would need memory, which may be what is missing.
inline void noteException(const char* what) noexcept {
  g_log("CorvaneTAVOSDK", G_LOG_LEVEL_MESSAGE, "A callback ended in an exception: %s",
        what == nullptr ? "of an unknown kind" : what);
}

// Calls `task` for a C library, which no exception may cross: it would end the host. One that comes
// out ends the task alone.
template <typename Task>
void guarded(const Task& task) noexcept {
  try {
    task();
  } catch (const std::exception& exception) {
    noteException(exception.what());
  } catch (...) {
    noteException(nullptr);
  }
}

}  // namespace tavo::gtk
