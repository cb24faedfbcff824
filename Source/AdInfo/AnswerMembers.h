#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tavo {

// What an ad server's document holds, for whoever explains what became of it. The ad itself is made
// from XAdInfo alone.
struct AnswerMembers {
  struct Member {
    std::string key;
    std::string text;
    bool isKnown = false;  // it goes into the record
  };

  std::string problem{};              // why there is no ad in the document; empty: there is one
  std::vector<Member> ad{};           // of the first ad
  std::size_t furtherAds = 0;         // which nobody reads
  std::vector<std::string> beside{};  // keys beside the array of ads

  [[nodiscard]] static AnswerMembers of(const std::string& body, int depth);
};

}  // namespace tavo
