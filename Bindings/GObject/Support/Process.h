#pragma once

#include <gio/gio.h>

#include <tavo/gtk/GtkPlatform.h>

namespace tavo::gobject {

// What exists once: the runtime, and the thread that it belongs to. Any thread may ask.
class Process {
 public:
  // Makes the runtime on the calling thread; harmless when repeated with the same options.
  static bool start(const gtk::GtkPlatformOptions& options, GError** error);

  [[nodiscard]] static bool isRunning();
  // False only on a thread that is known to be another one.
  [[nodiscard]] static bool isMainThread();

  // Sets the error and answers false when the library cannot be called here and now.
  [[nodiscard]] static bool isUsable(GError** error);
  // The same for calls that have nobody to tell: a critical message names `function`.
  [[nodiscard]] static bool isUsable(const char* function);
  // For calls that are harmless before the start.
  [[nodiscard]] static bool isOnMainThread(const char* function);
};

// For `dispose`: an object whose last reference goes on another thread lives until the main thread
// has taken it apart. True: leave it alone now.
[[nodiscard]] bool disposesOnMainThread(GObject* object);

}  // namespace tavo::gobject
