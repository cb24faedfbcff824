#pragma once

#include <filesystem>

#include "AdPlayer/MraidChecklist/MraidChecklist.h"
#include "AdPlayer/MraidChecklist/RunMraidChecklist.h"
#include "AdPlayer/Run/Result.h"

namespace tavo::adplayer {

// The checklist's points as a result of the runner: an expectation for each that is due, and the
// pictures that stand in `resultFolder`.
[[nodiscard]] Result resultOf(const MraidChecklist::Results& played,
                              const MraidChecklistOptions& options, Seconds took);

// Writes "result.json" and "events.jsonl"; false when they cannot be written.
[[nodiscard]] bool write(const Result& result, const std::filesystem::path& folder);

}  // namespace tavo::adplayer
