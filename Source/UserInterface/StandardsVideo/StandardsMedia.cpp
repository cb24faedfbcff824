#include "UserInterface/StandardsVideo/StandardsMedia.h"

#include <algorithm>
#include <array>
#include <limits>

#include "Values/Text.h"

namespace tavo {

namespace {

struct TypeAlias {
  std::string_view name;
  std::string_view type;
};
constexpr std::array<TypeAlias, 5> typeAliases{{{"video/x-mp4", "video/mp4"},
                                                {"video/m4v", "video/mp4"},
                                                {"video/x-m4v", "video/mp4"},
                                                {"application/mp4", "video/mp4"},
                                                {"application/ogg", "video/ogg"}}};

std::string typeOf(const VastMediaFile& file) {
  std::string type =
      lowerCased(trimmed(std::string_view{file.type}.substr(0, file.type.find(';'))));
  for (const auto& alias : typeAliases) {
    if (alias.name == type) type = alias.type;
  }
  return type;
}

// VPAID, in whatever way a document says it.
bool isProgram(const VastMediaFile& file) {
  const std::string type = typeOf(file);
  return equalsIgnoringCase(file.apiFramework, "VPAID") || contains(type, "javascript") ||
         type == "application/x-shockwave-flash";
}

// How much the file is scaled to fill the player: 1 for the exact size, more where it is too small.
double scaleOf(const VastMediaFile& file, const Size& player) {
  if (!(player.width > 0) || !(player.height > 0)) return 1;
  if (file.width <= 0 || file.height <= 0) return std::numeric_limits<double>::max();
  return std::min(player.width / file.width, player.height / file.height);
}

// Smaller is better.
struct Rank {
  bool tooSmall = false;
  double misfit = 0;
  bool tooFast = false;
  int bitrate = 0;  // less is better
  // The linter takes the zero that the compiler compares with for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  friend auto operator<=>(const Rank&, const Rank&) = default;
};

Rank rankOf(const VastMediaFile& file, const MediaWish& wish) {
  const double scale = scaleOf(file, wish.player);
  const bool tooSmall = scale > 1;
  const int bitrate = std::max(file.bitrate, file.minBitrate);
  const bool tooFast = wish.bitrate > 0 && bitrate > wish.bitrate;
  return {tooSmall, tooSmall ? scale : -scale, tooFast, tooFast ? bitrate : -bitrate};
}

// What the host has set for itself, in seconds; none without.
std::optional<VastOffset> slotOffset(const XAdSlotConfiguration* slot) {
  if (slot == nullptr || slot->skipOffsetTime < 0) return std::nullopt;
  const auto time = static_cast<double>(slot->skipOffsetTime);
  if (slot->skipOffsetType == 0) return VastOffset{time};
  if (slot->skipOffsetType == 1) return VastOffset{std::min(time / 100, 1.0), true};
  return std::nullopt;
}

}  // namespace

const std::vector<std::string>& filmTypes() {
  static const std::vector<std::string> types{"video/mp4", "video/webm", "video/ogg"};
  return types;
}

MediaRanking rankedMedia(const VastLinear& film, const MediaWish& wish) {
  MediaRanking ranking;
  for (const auto& file : film.mediaFiles) {
    const bool decodes =
        std::find(wish.types.begin(), wish.types.end(), typeOf(file)) != wish.types.end();
    const bool fetches = Url::fromText(file.url).isHttp();
    if (file.apiFramework.empty() && decodes && fetches) ranking.files.push_back(file);
  }
  std::stable_sort(ranking.files.begin(), ranking.files.end(),
                   [&wish](const VastMediaFile& left, const VastMediaFile& right) {
                     return rankOf(left, wish) < rankOf(right, wish);
                   });
  const bool onlyPrograms = !film.mediaFiles.empty() &&
                            std::all_of(film.mediaFiles.begin(), film.mediaFiles.end(), isProgram);
  if (onlyPrograms) ranking.failure = VastErrorCode::vpaid;
  return ranking;
}

SkipPoint standardsSkipPoint(const std::optional<VastOffset>& documentOffset, double duration,
                             const XAdSlotConfiguration* slot) {
  const auto offset = documentOffset ? documentOffset : slotOffset(slot);
  const double seconds = offset ? offset->seconds(duration) : duration;
  const bool never = !offset || seconds >= duration;
  return {.skipOffset = {},
          .skipDelay = static_cast<float>(never ? duration : seconds),
          .wholeVideo = never};
}

}  // namespace tavo
