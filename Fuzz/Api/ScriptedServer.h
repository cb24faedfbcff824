#pragma once

#include <map>
#include <string>

#include "Api/Bytes.h"
#include "Headless/HeadlessPlatform.h"

namespace tavo::fuzz {

// An ad server whose every answer has an impression address of its own, so that each can be
// counted.
class ScriptedServer {
 public:
  explicit ScriptedServer(headless::HeadlessPlatform& platform);

  // What ad requests are answered with from now on.
  void chooseAnswer(Bytes& bytes);

  // Ends the program when an impression was sent twice.
  void checkImpressions() const;

 private:
  void heard(const HttpRequest& request);

  headless::HeadlessPlatform& platform_;
  std::size_t kind_ = 0;
  Seconds delay_{0};
  bool silent_ = false;
  std::size_t answers_ = 0;
  std::map<std::string, int> impressions_;
};

}  // namespace tavo::fuzz
