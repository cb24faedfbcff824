#pragma once

#include <string>
#include <vector>

#include "Support/TemporaryFolder.h"

namespace tavo::test {

// Applications of a desktop that do nothing but write down what they are handed, each argument byte
// for byte. They are registered in a home folder of their own, so the desktop that the test runs on
// is neither asked nor changed.
//
// The folders of the user are read once in a process: make one before main, as a global.
class StandInHandlers {
 public:
  StandInHandlers();

  // What handlers were started with, in order.
  [[nodiscard]] std::vector<std::string> received() const;
  void clear() const;

  // Takes the handler of one type ("x-scheme-handler/sms", "text/calendar") away or puts it back.
  void setRegistered(const std::string& type, bool registered);

  [[nodiscard]] std::string picturesFolder() const { return folder_.path("Bilder"); }
  [[nodiscard]] std::string path(const std::string& name) const { return folder_.path(name); }

 private:
  void writeRegistrations() const;

  TemporaryFolder folder_;
  std::vector<std::string> types_{"x-scheme-handler/tel",
                                  "x-scheme-handler/sms",
                                  "x-scheme-handler/mailto",
                                  "x-scheme-handler/facetime",
                                  "x-scheme-handler/http",
                                  "x-scheme-handler/https",
                                  "text/calendar"};
};

}  // namespace tavo::test
