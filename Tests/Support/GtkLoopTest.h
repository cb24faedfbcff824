#pragma once

#include "Gtk/Services/GtkRunLoop.h"
#include "Support/HostLoop.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace tavo::test {

// A test with a real run loop and a folder of its own.
class GtkLoopTest : public testing::Test {
 protected:
  // Runs everything that has been posted.
  void settle() const {
    bool settled = false;
    runLoop_->post([&] { settled = true; });
    runUntil([&] { return settled; });
  }

  const TemporaryFolder folder_;
  const std::shared_ptr<gtk::GtkRunLoop> runLoop_ = std::make_shared<gtk::GtkRunLoop>();
};

}  // namespace tavo::test
