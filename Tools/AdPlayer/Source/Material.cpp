#include "AdPlayer/Source/Material.h"

#include <re2/re2.h>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <vector>

#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

constexpr Size phoneSize{320, 480};
constexpr Size prerollSize{320, 180};
constexpr double largestSide = 2'000;
constexpr std::size_t lookedThrough = 65'536;

Size sizeOf(std::string_view width, std::string_view height) {
  const auto number = [](std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
  };
  const Size size{number(width), number(height)};
  const bool isPlausible = size.width >= 10 && size.height >= 10 && size.width <= largestSide &&
                           size.height <= largestSide;
  return isPlausible ? size : Size{};
}

Placement placementFor(const Size& size) {
  const bool isWhole = size.width >= phoneSize.width && size.height >= 400;
  return isWhole ? Placement::interstitial : Placement::banner;
}

Material material(MaterialKind kind, const Size& said) {
  if (said.width < 1) return {kind, Placement::banner, {320, 50}};
  return {kind, placementFor(said), said};
}

// Where creatives say how large they are, the most deliberate place first.
Size sizeInPage(std::string_view html) {
  static const auto patterns = [] {
    RE2::Options options;
    options.set_case_sensitive(false);
    options.set_encoding(RE2::Options::EncodingLatin1);
    options.set_log_errors(false);
    std::vector<std::unique_ptr<RE2>> made;
    for (
        const char* text :
        {R"re(name\s*=\s*["']ad\.size["'][^>]*width\s*=\s*(\d+)\s*,\s*height\s*=\s*(\d+))re",
         R"re(<(?:body|html)[^>]*style\s*=\s*["'][^"']*width\s*:\s*(\d+)px[^"']*height\s*:\s*(\d+)px)re",
         R"re((?:body|html)[^{}<]{0,80}\{[^{}]{0,400}?[^-a-z]width\s*:\s*(\d+)px[^{}]{0,200}?[^-a-z]height\s*:\s*(\d+)px)re",
         R"re(<(?:div|img|canvas|a|iframe)[^>]*style\s*=\s*["'][^"']*width\s*:\s*(\d+)px[^"']*height\s*:\s*(\d+)px)re",
         R"re(<(?:img|canvas|iframe)[^>]*width\s*=\s*["']?(\d+)[^>]*height\s*=\s*["']?(\d+))re"}) {
      made.push_back(std::make_unique<RE2>(text, options));
    }
    return made;
  }();
  const std::string_view start = html.substr(0, lookedThrough);
  std::string width;
  std::string height;
  for (const auto& pattern : patterns) {
    if (!RE2::PartialMatch({start.data(), start.size()}, *pattern, &width, &height)) continue;
    const Size size = sizeOf(width, height);
    if (size.width > 0) return size;
  }
  return {};
}

unsigned bigEndian(std::string_view bytes, std::size_t at) {
  unsigned value = 0;
  for (std::size_t i = at; i < at + 4; ++i)
    value = value * 256 + static_cast<unsigned char>(bytes[i]);
  return value;
}

std::optional<Material> picture(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG\r\n\x1a\n") && bytes.size() > 24) {
    return material(MaterialKind::picture, {static_cast<double>(bigEndian(bytes, 16)),
                                            static_cast<double>(bigEndian(bytes, 20))});
  }
  const bool isOther = bytes.starts_with("\xFF\xD8\xFF") || bytes.starts_with("GIF8");
  return isOther ? std::optional{material(MaterialKind::picture, {})} : std::nullopt;
}

std::string textOf(const simdjson::dom::element& ad, const char* key) {
  std::string_view text;
  std::int64_t number = 0;
  if (ad[key].get_string().get(text) == simdjson::SUCCESS) return std::string{text};
  if (ad[key].get_int64().get(number) == simdjson::SUCCESS) return std::to_string(number);
  return {};
}

std::variant<Material, Refusal> recorded(std::string_view bytes) {
  simdjson::dom::parser parser;
  simdjson::dom::element document;
  if (const auto error = parser.parse(bytes.data(), bytes.size()).get(document)) {
    return Refusal{std::string{"looks like JSON and is none: "} + simdjson::error_message(error)};
  }
  simdjson::dom::array ads;
  if (document["Ad"].get_array().get(ads) != simdjson::SUCCESS) {
    return Refusal{"is JSON, but no ad server's answer: there is no array \"Ad\" at the top"};
  }
  Material answer{MaterialKind::answer};
  if (ads.size() == 0) return answer;
  const simdjson::dom::element ad = ads.at(0);
  const std::string text = textOf(ad, "Text");
  const Size said = sizeOf(textOf(ad, "W"), textOf(ad, "H"));
  if (said.width > 0) {
    answer = material(MaterialKind::answer, said);
  } else if (contains(text, "<VAST")) {
    answer = {MaterialKind::answer, Placement::preroll, prerollSize};
  } else {
    answer = material(MaterialKind::answer, sizeInPage(text));
  }
  if (textOf(ad, "Pos") == "Full") answer.placement = Placement::interstitial;
  return answer;
}

bool looksLikeHtml(std::string_view text) {
  constexpr std::array<std::string_view, 14> tags{
      "<html", "<!doctype html", "<body", "<script", "<div",   "<a ",     "<img",
      "<head", "<iframe",        "<p",    "<span",   "<style", "<canvas", "<svg"};
  std::string start{text.substr(0, lookedThrough)};
  std::transform(start.begin(), start.end(), start.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return std::any_of(tags.begin(), tags.end(),
                     [&](std::string_view tag) { return start.find(tag) != std::string::npos; });
}

// host/path/sdk/page/@position?query, as the library asks.
std::optional<PlayPlan> requestOfServer(const std::string& text) {
  static const RE2 pattern{R"re((?:https?://)?([^?#]+)/sdkl?/([^?#]+)/@([^?#/]+)(?:\?(.*))?)re"};
  PlayPlan plan;
  if (!RE2::FullMatch(text, pattern, &plan.domain, &plan.page, &plan.position, &plan.query)) {
    return std::nullopt;
  }
  plan.title = text;
  return plan;
}

std::string withoutScheme(const std::string& text) {
  const auto end = text.find("://");
  std::string rest = end == std::string::npos ? text : text.substr(end + 3);
  while (rest.ends_with('/')) rest.pop_back();
  return rest;
}

}  // namespace

std::string_view nameOf(MaterialKind kind) {
  constexpr std::array<std::string_view, 4> names{"HTML", "VAST", "recorded answer", "picture"};
  return names.at(static_cast<std::size_t>(kind));
}

std::variant<Material, Refusal> recognise(std::string_view bytes) {
  if (bytes.empty()) return Refusal{"is empty"};
  if (bytes.size() > largestMaterial) {
    return Refusal{"is too large for an ad: " + std::to_string(bytes.size()) +
                   " bytes; the library takes at most " + std::to_string(largestMaterial)};
  }
  if (const auto shown = picture(bytes)) return *shown;
  if (bytes.find('\0') != std::string_view::npos) {
    return Refusal{
        "is binary: what can be played is an HTML page, a VAST document, a recorded JSON answer or "
        "a picture"};
  }
  const auto first = bytes.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
  if (first == std::string_view::npos) return Refusal{"is empty"};
  if (bytes[first] == '{') return recorded(bytes.substr(first));
  if (contains(bytes, "<VAST"))
    return Material{MaterialKind::vast, Placement::preroll, prerollSize};
  if (looksLikeHtml(bytes)) return material(MaterialKind::html, sizeInPage(bytes));
  return Refusal{
      "is none of what can be played: an HTML page, a VAST document, a recorded JSON answer, a "
      "picture"};
}

SourceKind sourceFrom(const std::string& text, const SourceOptions& options) {
  if (text.empty()) return Refusal{"Nothing to play was named."};
  if (!options.page.empty()) {
    PlayPlan plan;
    plan.title = text + " " + options.page;
    plan.domain = withoutScheme(text);
    plan.page = options.page;
    plan.position = options.position.empty() ? "Top" : options.position;
    return ServerSource{plan};
  }
  std::error_code failure;
  const std::filesystem::path path{text};
  if (std::filesystem::is_directory(path, failure)) {
    return Refusal{"is a folder; name the files in it"};
  }
  if (std::filesystem::exists(path, failure)) return FileSource{text};
  if (auto plan = requestOfServer(text)) return ServerSource{std::move(*plan)};
  if (text.starts_with("http://") || text.starts_with("https://")) return UrlSource{text};
  const bool isFileName = text.find('/') != std::string::npos || path.has_extension();
  if (isFileName) return Refusal{"there is no such file"};
  return CampaignSource{text};
}

}  // namespace tavo::adplayer
