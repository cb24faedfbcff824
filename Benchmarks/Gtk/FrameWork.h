#pragma once

namespace tavo::benchmark {

// The work of a frame: milliseconds of the main thread in the sixty frames of a second, beyond what
// bare widgets take that are shown in turns with ours, in the same window.

enum class FilmInFrame {
  none,
  counting,  // with the time on it after which it may be left, beside a button with such a time
  withBar,   // with a bar and a button, beside the toolkit's own
};

// Of nine slots of pages, of which three move, and of a film.
[[nodiscard]] double frameWorkOfSlots(FilmInFrame film);
// Of as many bare pages that share a process, in as many widgets as a slot has around its page.
[[nodiscard]] double frameWorkOfBoxes();

}  // namespace tavo::benchmark
