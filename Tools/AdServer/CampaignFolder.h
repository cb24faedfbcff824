#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AdServer/Campaign.h"

namespace tavo::adserver {

// A folder of campaigns: one folder each, or one file each (a creative as .html, a VAST document as
// .xml or .vast, an answer as .json), which is a campaign of its full name. Everything is read anew
// on each call, so an edited campaign shows at the next request. Only files directly in a
// campaign's folder are ever read: names that lead elsewhere, through dots, separators or links,
// give none.
class CampaignFolder {
 public:
  explicit CampaignFolder(std::filesystem::path path);

  // The campaigns' names in alphabetical order.
  [[nodiscard]] std::vector<std::string> names() const;

  // None when there is no such campaign.
  [[nodiscard]] std::optional<Campaign> campaign(std::string_view name) const;

  // The campaign that was recorded for this path and query, or none.
  [[nodiscard]] std::optional<Campaign> recordedFor(std::string_view pathAndQuery) const;

  // The bytes of a file of a campaign, or none. Beside a bare file, its neighbours that a page may
  // show: pictures, films, styles, scripts and documents.
  [[nodiscard]] std::optional<std::string> file(std::string_view campaign,
                                                std::string_view file) const;

  // The campaign's answer file with its placeholders filled:
  //   ${server}    the server's base URL
  //   ${campaign}  the campaign's name
  //   ${<file>}    a file of the campaign, its own ${server} and ${campaign} filled, escaped so
  //                that it stands inside a JSON string; for markup that people want to edit
  // None when the answer file is missing. `missing` gets the place of the first file that is named
  // and is not there, as "answer.json:3: ...".
  [[nodiscard]] std::optional<std::string> answer(const Campaign& campaign, std::string_view server,
                                                  std::string* missing = nullptr) const;

 private:
  [[nodiscard]] bool isBareFile(std::string_view name) const;

  std::filesystem::path path_;
};

// Whether a text can name a campaign or a file: one visible name, no separators, no way up.
[[nodiscard]] bool isPlainName(std::string_view name);

}  // namespace tavo::adserver
