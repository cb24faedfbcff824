#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Services/RunLoop.h"

namespace tavo::gtk {

// Counts from outside what arrives for the engine, where no server has declared it: the engine does
// not tell of the bytes of an answer before its end, and not every answer has one. It does not say
// either whose bytes they are, so each page with an open answer is told of all that is not
// explained. Looks once a second while there is such a page, and never else. Main thread only.
class NetworkMeter {
 public:
  using Told = std::function<void(std::uint64_t bytes)>;

  // While `pauses` says so nothing that arrives is told.
  NetworkMeter(std::shared_ptr<RunLoop> runLoop, std::function<bool()> pauses)
      : runLoop_{std::move(runLoop)}, pauses_{std::move(pauses)} {}

  // A server has declared what is still to arrive.
  void explain(std::uint64_t bytes);
  // `told` hears for as long as somebody else holds it.
  void follow(const std::shared_ptr<Told>& told);

 private:
  void look();
  [[nodiscard]] std::uint64_t arrived();

  std::shared_ptr<RunLoop> runLoop_;
  std::function<bool()> pauses_;
  std::vector<std::weak_ptr<Told>> followers_;
  int process_ = 0;
  std::map<std::uint64_t, std::uint64_t> sockets_;  // what each had received at the last look
  std::uint64_t explained_ = 0;                     // and has not arrived yet
  Timer timer_;
};

}  // namespace tavo::gtk
