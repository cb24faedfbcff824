#include "UserInterface/NativeView/MediaChoice.h"

#include <algorithm>

#include "Utilities/NumberText.h"

namespace tavo {

namespace {

using MediaFiles = std::vector<XMediaFile>;

bool isVideo(const XMediaFile& file) { return file.type == "video/mp4"; }

Url urlOf(const XMediaFile& file) { return Url::fromText(file.mediaFileURL.value_or("")); }

double widthOf(const XMediaFile& file) { return leadingNumber(file.width.value_or("")); }

std::vector<Url> collect(const std::vector<XCreative>& creatives) {
  std::vector<Url> found;
  std::size_t position = 0;
  for (const auto& creative : creatives) {
    if (!creative.linearAds.mediaFilesArray) continue;
    const MediaFiles& files = *creative.linearAds.mediaFilesArray;
    for (; position < files.size(); ++position) {
      Url url = urlOf(files[position]);
      if (isVideo(files[position]) && !url.empty()) found.push_back(std::move(url));
    }
  }
  return found;
}

std::vector<const XMediaFile*> sortedVideos(const OptionalList<XMediaFile>& files) {
  std::vector<const XMediaFile*> videos;
  if (!files) return videos;
  for (const auto& file : *files) {
    if (isVideo(file)) videos.push_back(&file);
  }
  std::stable_sort(
      videos.begin(), videos.end(),
      [](const XMediaFile* left, const XMediaFile* right) { return left->width < right->width; });
  return videos;
}

// The file whose width is that of the view; else the first wider one; else the last one.
const XMediaFile* pick(const std::vector<const XMediaFile*>& videos, double referenceWidth) {
  const auto wider = std::find_if(videos.begin(), videos.end(), [&](const XMediaFile* file) {
    return widthOf(*file) > referenceWidth;
  });
  const XMediaFile* fitting = wider == videos.begin() ? nullptr : *std::prev(wider);
  if (fitting != nullptr && widthOf(*fitting) == referenceWidth) return fitting;
  return wider != videos.end() ? *wider : fitting;
}

}  // namespace

std::vector<Url> videoURLFromVASTAd(const XVASTAd& ad, double referenceWidth) {
  if (!ad.inlineAd || !ad.inlineAd->creativesArray || ad.inlineAd->creativesArray->empty()) {
    return {};
  }
  const auto& creatives = *ad.inlineAd->creativesArray;
  std::vector<Url> urls = collect(creatives);
  const auto videos = sortedVideos(creatives.back().linearAds.mediaFilesArray);
  if (const XMediaFile* chosen = pick(videos, referenceWidth)) {
    Url url = urlOf(*chosen);
    if (!url.empty()) urls.insert(urls.begin(), std::move(url));
  }
  return urls;
}

}  // namespace tavo
