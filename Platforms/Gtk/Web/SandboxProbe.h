#pragma once

namespace tavo::gtk {

// True when the engine's sandbox can be set up here. The engine keeps its web processes in
// namespaces of their own by way of bubblewrap, and ends the *host* where the system does not allow
// that, or where a file of the person's session that it lends to the sandbox is out of reach: the
// display's authority, the sockets of sound and bus. So the same is tried once with a program that
// does nothing, which takes 3 to 6 ms.
// Switching the sandbox off instead is out of the question: pages of strangers run in it.
[[nodiscard]] bool sandboxIsAvailable();

}  // namespace tavo::gtk
