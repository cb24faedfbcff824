#pragma once

#include <map>
#include <string>
#include <vector>

#include "Support/PrivateBus.h"

namespace tavo::test {

// A modem manager on a private bus, as far as operators are concerned. The host's loop has to run
// for it to answer. Tests set the public fields.
class FakeModemManager {
 public:
  explicit FakeModemManager(const PrivateBus& bus);
  ~FakeModemManager();
  FakeModemManager(const FakeModemManager&) = delete;
  FakeModemManager& operator=(const FakeModemManager&) = delete;

  static constexpr const char* simPath = "/org/freedesktop/ModemManager1/SIM/0";

  std::string modems = "@a{oa{sa{sv}}} {}";  // what is managed, in GLib's text form
  std::string simOperatorName;
  std::string simOperatorIdentifier;
  bool silent = false;  // takes questions and never answers

 private:
  void exportObject(const char* path, const char* description, const GDBusInterfaceVTable& table);
  void answer(GDBusMethodInvocation* question);

  GDBusConnection* connection_;
  std::vector<guint> objects_;
  std::vector<GDBusMethodInvocation*> unanswered_;
};

}  // namespace tavo::test
