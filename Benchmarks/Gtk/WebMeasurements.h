#pragma once

namespace tavo::benchmark {

// What is measured in a process of its own, because it is about the whole of a process or about its
// first page. Each returns one number.

// Megabytes of the host and all that it has started, with so many HTML slots on the screen; shared
// pages count in parts.
[[nodiscard]] double memoryOfSlots(int slots);
[[nodiscard]] double memoryOfBareViews(int views);

// How much that, and the host alone, grow over 2,000 refreshes of a slot with a sample campaign
// that was shown 400 times before, as factors: the mean of twenty looks over the life of a web
// process beside the mean of as many after them.
struct Growth {
  double host = 0;
  double family = 0;
};
[[nodiscard]] Growth growthOverRefreshes(const char* campaign);
// The same without the library: as many pages in one web view, pictures through libsoup in one
// widget, films in media files.
[[nodiscard]] Growth growthOfBareView();
[[nodiscard]] Growth growthOfBarePictures();
[[nodiscard]] Growth growthOfBareFilms();

// Milliseconds from the answer to the finished page, for the first ad of a process. The answer
// takes a quarter of a second.
enum class Slot { unknown, hasShownHtml };
[[nodiscard]] double firstAd(Slot slot);
[[nodiscard]] double firstBareView();

// The longest time, in milliseconds, for which the host's loop did not come round while ads were
// loaded and expanded, the first one left out.
[[nodiscard]] double longestStall();

}  // namespace tavo::benchmark
