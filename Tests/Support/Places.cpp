#include "Support/Places.h"

namespace tavo::test {

std::string testData() { return TAVO_TEST_DATA; }
std::string resources() { return TAVO_RESOURCES; }
std::string sampleCampaigns() { return TAVO_CAMPAIGNS; }

}  // namespace tavo::test
