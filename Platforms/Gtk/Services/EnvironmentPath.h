#pragma once

#include <string>

namespace tavo::gtk {

// The file or folder that the environment variable `name` chooses for the library to load from; ""
// when it chooses none. A relative path is none: what it leads to would depend on where the program
// was started. Neither is anything in a program that has more rights than whoever started it: they
// would lend those rights to a file of theirs.
[[nodiscard]] std::string pathOfEnvironment(const char* name);

}  // namespace tavo::gtk
