#include "Support/Places.h"

#include <fstream>
#include <iterator>

#include "Support/Testing.h"

namespace tavo::test {

std::string testData() { return TAVO_TEST_DATA; }
std::string resources() { return TAVO_RESOURCES; }
std::string sampleCampaigns() { return TAVO_CAMPAIGNS; }

std::string contentsOf(const std::string& file) {
  std::ifstream stream{file, std::ios::binary};
  EXPECT_TRUE(stream) << file;
  return {std::istreambuf_iterator<char>{stream}, {}};
}

}  // namespace tavo::test
