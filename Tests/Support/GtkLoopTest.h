#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "Gtk/Services/GtkRunLoop.h"
#include "Support/TemporaryFolder.h"

namespace tavo::test {

// A test with a real run loop and a folder of its own.
class GtkLoopTest : public testing::Test {
 protected:
  // Runs the loop until `done`, or until far more time has passed than any test needs.
  void runUntil(const std::function<bool()>& done) const {
    bool late = false;
    const Timer deadline = runLoop_->after(Seconds{60}, [&] { late = true; });
    while (!done() && !late) g_main_context_iteration(nullptr, TRUE);
  }

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
