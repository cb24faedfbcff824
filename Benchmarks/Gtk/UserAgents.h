#pragma once

namespace tavo::benchmark {

// Milliseconds to the web engine's user agent, in a process that has shown no page: as the library
// finds it when it knows the installed engine already and when it does not, and as a web view says
// it that was made for nothing else. `unknownAtStart`: the host shows its window first.
enum class Engine { known, unknown, unknownAtStart };
[[nodiscard]] double userAgentTime(Engine engine);
[[nodiscard]] double userAgentTimeOfView();
// As the library's helper says it, from its start to its end.
[[nodiscard]] double userAgentTimeOfProgram();

}  // namespace tavo::benchmark
