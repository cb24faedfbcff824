#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "AdPlayer/Source/Material.h"
#include "Services/HttpClient.h"

namespace tavo::adplayer {

// Something that can be played now, with the server that it is served by, if that is ours.
struct Playable {
  PlayPlan plan;
  std::shared_ptr<void> server{};  // kept while it is played
};

struct OpeningOptions {
  std::string campaigns{};  // folder of the campaigns that a name may mean
  SourceOptions source{};
  std::optional<Placement> placement{};  // instead of the guess
  std::optional<Size> size{};
};

using Opened = std::variant<Playable, Refusal>;

// Makes whatever a person gave playable; `done` is called once, at once or later, on the main
// thread. A refusal is one line that names the thing. URLs are fetched over `http`.
void open(const std::string& text, const OpeningOptions& options, std::shared_ptr<HttpClient> http,
          const std::function<void(const Opened&)>& done);

// The names in a folder of campaigns, in order.
[[nodiscard]] std::vector<std::string> campaignNames(const std::string& folder);

}  // namespace tavo::adplayer
