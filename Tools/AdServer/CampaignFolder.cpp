#include "AdServer/CampaignFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "AdServer/CampaignReader.h"
#include "AdServer/JsonText.h"
#include "AdServer/Placeholders.h"
#include "Gtk/GPtr.h"

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

bool endsIn(std::string_view name, std::initializer_list<std::string_view> endings) {
  return std::any_of(endings.begin(), endings.end(),
                     [name](std::string_view ending) { return name.ends_with(ending); });
}

bool isCampaignFile(std::string_view name) {
  return endsIn(name, {".html", ".htm", ".xml", ".vast", ".json"});
}

bool isPageFile(std::string_view name) {
  return isCampaignFile(name) ||
         endsIn(name, {".png", ".jpg", ".jpeg", ".gif", ".svg", ".webp", ".css", ".js", ".mp4",
                       ".webm", ".ttf", ".woff", ".woff2"});
}

// An answer around a bare creative, whose text goes in as it is.
std::string answerAround(const Campaign& campaign, std::string_view server,
                         std::string_view creative) {
  const bool isPage = endsIn(campaign.name, {".html", ".htm"});
  const std::string base = std::string{server};
  const gtk::GText name{g_uri_escape_string(campaign.name.c_str(), nullptr, FALSE)};
  return "{\"Ad\":[{\"AdType\":\"" + std::string{isPage ? "text/html" : "text/xml"} +
         "\",\"Text\":" + jsonString(creative) +
         (isPage ? ",\"FileUrl\":" + jsonString(base + "/assets/" + name.get() + "/") : "") +
         ",\"ImpUrl\":" + jsonString(base + "/track/" + name.get() + "/impression") + "}]}";
}

Campaign campaignOfFile(std::string_view name) {
  Campaign campaign;
  campaign.name = campaign.title = campaign.answerFile = name;
  campaign.isFile = true;
  const bool isVideo = endsIn(name, {".xml", ".vast"});
  campaign.placement = isVideo ? Placement::preroll : Placement::banner;
  campaign.description = endsIn(name, {".json"}) ? "An answer as it was received."
                         : isVideo               ? "A VAST document."
                                                 : "A creative.";
  return campaign;
}

// Only a name with an ending can be meant as a file: creatives have template literals of their own.
void noteMissing(std::string_view text, std::string_view file, std::string_view answerFile,
                 std::string* missing) {
  if (missing == nullptr || !missing->empty() || file.find('.') == file.npos ||
      !isPlainName(file)) {
    return;
  }
  const auto at = text.find("${" + std::string{file} + "}");
  const auto line = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
  *missing = std::string{answerFile} + ":" + std::to_string(line + 1) +
             ": the campaign has no file \"" + std::string{file} + "\"";
}

}  // namespace

bool isPlainName(std::string_view name) {
  constexpr std::string_view forbidden{"/\\\0", 3};
  return !name.empty() && name.front() != '.' && name.find_first_of(forbidden) == name.npos;
}

CampaignFolder::CampaignFolder(fs::path path) : path_{std::move(path)} {}

bool CampaignFolder::isBareFile(std::string_view name) const {
  std::error_code ignored;
  return isCampaignFile(name) && fs::is_regular_file(path_ / name, ignored) &&
         !fs::is_symlink(path_ / name, ignored);
}

std::vector<std::string> CampaignFolder::names() const {
  std::vector<std::string> names;
  std::error_code ignored;  // a missing folder has no campaigns
  for (const auto& entry : fs::directory_iterator{path_, ignored}) {
    const auto name = entry.path().filename().string();
    if (isPlainName(name) && (entry.is_directory(ignored) || isBareFile(name))) {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<Campaign> CampaignFolder::campaign(std::string_view name) const {
  std::error_code ignored;
  if (!isPlainName(name)) return std::nullopt;
  if (fs::is_directory(path_ / name, ignored)) {
    return readCampaign(std::string{name}, file(name, "campaign.json").value_or(""));
  }
  return isBareFile(name) ? std::optional{campaignOfFile(name)} : std::nullopt;
}

std::optional<Campaign> CampaignFolder::recordedFor(std::string_view pathAndQuery) const {
  for (const auto& name : names()) {
    auto candidate = campaign(name);
    if (candidate && candidate->recordedPath == pathAndQuery) return candidate;
  }
  return std::nullopt;
}

std::optional<std::string> CampaignFolder::file(std::string_view campaign,
                                                std::string_view file) const {
  if (!isPlainName(campaign) || !isPlainName(file)) {
    return std::nullopt;
  }
  std::error_code error;
  const auto root = fs::canonical(path_, error);
  const bool bare = !error && isBareFile(campaign) && isPageFile(file);
  const auto folder = bare ? path_ : path_ / campaign;
  const auto wanted = error ? fs::path{} : fs::canonical(folder / file, error);
  // A link inside a campaign may lead anywhere; what counts is where the file really is.
  const auto real = bare ? wanted.parent_path() : wanted.parent_path().parent_path();
  if (error || real != root || !fs::is_regular_file(wanted, error)) {
    return std::nullopt;
  }
  return bytesOf(wanted);
}

std::optional<std::string> CampaignFolder::answer(const Campaign& campaign, std::string_view server,
                                                  std::string* missing) const {
  const auto body = file(campaign.name, campaign.answerFile);
  if (!body) {
    return std::nullopt;
  }
  if (campaign.isFile) {
    if (!campaign.name.ends_with(".json")) return answerAround(campaign, server, *body);
    return fillServerAndCampaign(*body, server, campaign.name);
  }
  const auto withFiles =
      fillPlaceholders(*body, [&](std::string_view name) -> std::optional<std::string> {
        const auto content = file(campaign.name, name);
        if (!content) {
          noteMissing(*body, name, campaign.answerFile, missing);
          return std::nullopt;
        }
        return jsonEscaped(fillServerAndCampaign(*content, server, campaign.name));
      });
  return fillServerAndCampaign(withFiles, server, campaign.name);
}

}  // namespace tavo::adserver
