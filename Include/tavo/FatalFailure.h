#pragma once

#include <functional>
#include <string>

#include <tavo/Export.h>

namespace tavo {

// What happens when something that must never fail has failed, for example the store of
// XErrorHandler: the reason goes to the platform's log, then the process ends with abort().
//
// A host with a way of its own to go down, or a test, sets a handler. It is called instead of the
// abort, on the thread on which the failure happened, so it may be called on any. When it returns,
// the operation that failed returns without effect and the library goes on.
class TAVO_EXPORT FatalFailure {
 public:
  // The one of the current runtime. Any thread.
  [[nodiscard]] static FatalFailure& sharedInstance();

  // Receives the reason, a sentence for a log. Set it before the first failure: it is read without
  // a lock.
  std::function<void(const std::string& reason)> handler;

  // Fails: tells the platform's log, then the handler or the end of the process. Any thread.
  void raise(const std::string& reason) const;
};

}  // namespace tavo
