#include <exception>
#include <string>

#include <tavo/Observer.h>
#include <tavo/Runtime.h>

#include "Runtime/Environment.h"
#include "Services/Log.h"

namespace tavo {

// What is missing may be memory, so that the note cannot be written either.
void noteObserverException() noexcept try {
  std::string what = "of an unknown kind";
  try {
    throw;
  } catch (const std::exception& exception) {
    what = exception.what();
  } catch (...) {
  }
  if (const auto environment = Runtime::currentEnvironment()) {
    environment->platform().log->write(
        LogLevel::error, "An exception came out of an operation of a delegate: " + what +
                             ". The library goes on; catch it inside the operation.");
  }
} catch (...) {
}

}  // namespace tavo
