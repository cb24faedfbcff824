#pragma once

#include <string>

namespace tavo::test {

// Folders of this checkout, without a slash at the end.
[[nodiscard]] std::string testData();         // what tests read
[[nodiscard]] std::string resources();        // what the library brings
[[nodiscard]] std::string sampleCampaigns();  // what the sample server serves

}  // namespace tavo::test
