#pragma once

#include <functional>
#include <memory>

#include "Runtime/Environment.h"
#include "Services/HttpClient.h"

namespace tavo {

// Finds out where a click leads, which a redirect by way of a counter hides. One click at a time:
// the next one takes its place, and nothing is told once this is gone. Main thread only.
class ClickResolution {
 public:
  using Arrived = std::function<void(const HttpResult&)>;

  explicit ClickResolution(std::shared_ptr<Environment> environment);

  // Fetches no more than the headers of the last answer, within the time that a user waits for a
  // page. `arrived` is called later, and once: whoever it tells may drop this object.
  void follow(HttpRequest request, Arrived arrived);
  void forget() { way_.reset(); }

 private:
  struct Way {
    ~Way();
    std::shared_ptr<HttpClient::Exchange> exchange;
  };

  std::shared_ptr<Environment> environment_;
  std::shared_ptr<Way> way_;
};

}  // namespace tavo
