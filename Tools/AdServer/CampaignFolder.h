#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AdServer/Campaign.h"

namespace tavo::adserver {

// A folder with one folder per campaign. Everything is read anew on each call, so an edited
// campaign shows at the next request. Only files directly in a campaign's folder are ever read:
// names that lead elsewhere, through dots, separators or links, give none.
class CampaignFolder {
 public:
  explicit CampaignFolder(std::filesystem::path path);

  // The campaigns' names in alphabetical order.
  [[nodiscard]] std::vector<std::string> names() const;

  // None when there is no such campaign.
  [[nodiscard]] std::optional<Campaign> campaign(std::string_view name) const;

  // The bytes of a file of a campaign, or none.
  [[nodiscard]] std::optional<std::string> file(std::string_view campaign,
                                                std::string_view file) const;

  // The campaign's answer file with its placeholders filled:
  //   ${server}    the server's base URL
  //   ${campaign}  the campaign's name
  //   ${<file>}    a file of the campaign, its own ${server} and ${campaign} filled, escaped so
  //                that it stands inside a JSON string; for markup that people want to edit
  // None when the answer file is missing.
  [[nodiscard]] std::optional<std::string> answer(const Campaign& campaign,
                                                  std::string_view server) const;

 private:
  std::filesystem::path path_;
};

// Whether a text can name a campaign or a file: one visible name, no separators, no way up.
[[nodiscard]] bool isPlainName(std::string_view name);

}  // namespace tavo::adserver
