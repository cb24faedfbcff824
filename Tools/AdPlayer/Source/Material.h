#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "AdPlayer/Source/Placement.h"

namespace tavo::adplayer {

// What a text turned out to be.
enum class MaterialKind { html, vast, answer, picture };

[[nodiscard]] std::string_view nameOf(MaterialKind kind);

// Something to play, recognised by its content and not by its name.
struct Material {
  MaterialKind kind = MaterialKind::html;
  Placement placement = Placement::banner;
  Size size{320, 50};  // of the slot that shows it best, in points
};

// Why something cannot be played: one line that says what to do.
struct Refusal {
  std::string why;
};

constexpr std::size_t largestMaterial = std::size_t{4} * 1024 * 1024;

// Recognises bytes. HTML needs a tag or two, VAST its root, a recorded answer the array "Ad";
// pictures are known by their first bytes. The size comes from the creative where it says one: the
// meta "ad.size", the width and height of its body or of the answer, the size of a picture; VAST is
// a pre-roll, a page of a phone's size an interstitial.
[[nodiscard]] std::variant<Material, Refusal> recognise(std::string_view bytes);

// What a person gave: a file, a URL, the address of an ad server or the name of a campaign.
struct FileSource {
  std::string path;
};
struct UrlSource {
  std::string url;
};
struct ServerSource {
  PlayPlan plan;
};
struct CampaignSource {
  std::string name;
};
using SourceKind = std::variant<FileSource, UrlSource, ServerSource, CampaignSource, Refusal>;

struct SourceOptions {
  std::string page{};      // set: what is given is an ad server
  std::string position{};  // of an ad server
};

// A file when there is one, a whole request of an ad server (.../sdk/page/@position), else a URL,
// else a campaign. Looks at the file system only for whether `text` names something.
[[nodiscard]] SourceKind sourceFrom(const std::string& text, const SourceOptions& options);

}  // namespace tavo::adplayer
