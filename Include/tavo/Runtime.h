#pragma once

#include <memory>

#include <tavo/Export.h>
#include <tavo/Platform.h>

namespace tavo {

class Environment;
class NotificationCenter;

// Everything that exists once per process: the platform with its limits, and the shared instances.
// A host makes one on the main thread, right after it has set its toolkit up, and keeps it while it
// shows ads:
//
//   tavo::Runtime runtime{tavo::gtk::makePlatform({.applicationId = "com.example.host"})};
//
// Runtimes nest: the newest living one is the current one, and ad objects belong to the one that
// was current when they were made. They may end in any order, also before their views: a view
// without its runtime keeps what it needs, and goes quietly. A second one for the same platform is
// the first one under another name, with its settings; so is that of an application which makes its
// platform and runtime each time that it is activated.
//
// The thread that makes the oldest living runtime is the main thread. The door's operations that
// are for the main thread alone end the process, with a message that names the call, on another.
class TAVO_EXPORT Runtime {
 public:
  // Ends the process with a message that names the service when the platform lacks one.
  explicit Runtime(Platform platform);
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  // The newest runtime. There must be one: without it the process ends with a message that says
  // what to do. Any thread.
  [[nodiscard]] static Runtime& current();
  // The environment of the newest runtime; null when there is none. Any thread.
  [[nodiscard]] static std::shared_ptr<Environment> currentEnvironment();

  [[nodiscard]] const Platform& platform() const;
  [[nodiscard]] const Limits& limits() const;
  [[nodiscard]] NotificationCenter& notifications() const;

  // What the SDK's objects work in. Whoever shares it keeps the services and the shared instances
  // beyond the runtime.
  [[nodiscard]] const std::shared_ptr<Environment>& environment() const { return environment_; }

 private:
  const std::shared_ptr<Environment> environment_;
};

}  // namespace tavo
