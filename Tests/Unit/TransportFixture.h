#pragma once

#include <tavo/Runtime.h>

#include "Headless/HeadlessPlatform.h"
#include "Support/Testing.h"

namespace tavo::test {

class TransportTest : public testing::Test {
 protected:
  explicit TransportTest(const Limits& limits = {})
      : platform_{limits}, runtime_{platform_.platform()} {}

  headless::HeadlessPlatform platform_;
  const std::shared_ptr<headless::HeadlessAlerts> alerts_ = platform_.alerts;
  Runtime runtime_;
};

}  // namespace tavo::test
