#pragma once

#include <future>

namespace tavo::gtk {

// Finds out whether the engine's sandbox can be set up. The engine keeps its web processes in
// namespaces of their own by way of bubblewrap, and ends the *host* where the system does not allow
// that, or where a file of the person's session that it lends to the sandbox is out of reach: the
// display's authority, the sockets of sound and bus. So the same is tried once with a program that
// does nothing, beside whatever is done until somebody wants to know. Made on the main thread, with
// the toolkit set up.
// Switching the sandbox off instead is out of the question: pages of strangers run in it.
class SandboxProbe {
 public:
  SandboxProbe();

  // Waits for the attempt, five seconds at most.
  [[nodiscard]] bool isAvailable() { return available_.get(); }

 private:
  std::shared_future<bool> available_;
};

}  // namespace tavo::gtk
