#include "AdServer/CampaignFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "AdServer/CampaignReader.h"
#include "AdServer/JsonText.h"
#include "AdServer/Placeholders.h"

namespace tavo::adserver {

namespace fs = std::filesystem;

namespace {

std::optional<std::string> bytesOf(const fs::path& path) {
  std::ifstream stream{path, std::ios::binary};
  if (!stream) {
    return std::nullopt;
  }
  return std::string{std::istreambuf_iterator<char>{stream}, std::istreambuf_iterator<char>{}};
}

}  // namespace

bool isPlainName(std::string_view name) {
  constexpr std::string_view forbidden{"/\\\0", 3};
  return !name.empty() && name.front() != '.' && name.find_first_of(forbidden) == name.npos;
}

CampaignFolder::CampaignFolder(fs::path path) : path_{std::move(path)} {}

std::vector<std::string> CampaignFolder::names() const {
  std::vector<std::string> names;
  std::error_code ignored;  // a missing folder has no campaigns
  for (const auto& entry : fs::directory_iterator{path_, ignored}) {
    const auto name = entry.path().filename().string();
    if (isPlainName(name) && entry.is_directory(ignored)) {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<Campaign> CampaignFolder::campaign(std::string_view name) const {
  std::error_code ignored;
  if (!isPlainName(name) || !fs::is_directory(path_ / name, ignored)) {
    return std::nullopt;
  }
  return readCampaign(std::string{name}, file(name, "campaign.json").value_or(""));
}

std::optional<std::string> CampaignFolder::file(std::string_view campaign,
                                                std::string_view file) const {
  if (!isPlainName(campaign) || !isPlainName(file)) {
    return std::nullopt;
  }
  std::error_code error;
  const auto root = fs::canonical(path_, error);
  const auto wanted = error ? fs::path{} : fs::canonical(path_ / campaign / file, error);
  // A link inside a campaign may lead anywhere; what counts is where the file really is.
  if (error || wanted.parent_path().parent_path() != root || !fs::is_regular_file(wanted, error)) {
    return std::nullopt;
  }
  return bytesOf(wanted);
}

std::optional<std::string> CampaignFolder::answer(const Campaign& campaign,
                                                  std::string_view server) const {
  const auto body = file(campaign.name, campaign.answerFile);
  if (!body) {
    return std::nullopt;
  }
  const auto withFiles =
      fillPlaceholders(*body, [&](std::string_view name) -> std::optional<std::string> {
        const auto content = file(campaign.name, name);
        if (!content) {
          return std::nullopt;
        }
        return jsonEscaped(fillServerAndCampaign(*content, server, campaign.name));
      });
  return fillServerAndCampaign(withFiles, server, campaign.name);
}

}  // namespace tavo::adserver
