#pragma once

#include <string>

namespace tavo::test {

// Folders of this checkout, without a slash at the end.
[[nodiscard]] std::string testData();         // what tests read
[[nodiscard]] std::string resources();        // what the library brings
[[nodiscard]] std::string sampleCampaigns();  // what the sample server serves

// The bytes of a file; a failure where it cannot be read.
[[nodiscard]] std::string contentsOf(const std::string& file);

}  // namespace tavo::test
