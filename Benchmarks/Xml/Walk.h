#pragma once

#include <cstddef>

namespace tavo::benchmarks {

// What a walk has found, so that the walks of all readers can be held against one another.
struct Facts {
  std::size_t ads = 0;
  std::size_t texts = 0;   // texts that are not empty
  std::size_t values = 0;  // attribute values that are not empty
  std::size_t bytes = 0;   // of both; differs between readers, which treat blanks in different ways

  void addText(std::size_t length) {
    texts += length != 0 ? 1 : 0;
    bytes += length;
  }
  void addValue(std::size_t length) {
    values += length != 0 ? 1 : 0;
    bytes += length;
  }
};

// What a player wants to know of every ad, looked up by name: impressions, tracking, media files.
// `Tree` says how a reader's nodes are asked.
template <typename Tree, typename Node>
Facts walked(const Tree& tree, const Node& vast) {
  Facts facts;
  const auto forEach = [&tree](const Node& parent, const auto& name, const auto& visit) {
    if (!tree.exists(parent)) {
      return;
    }
    for (Node at = tree.child(parent, name); tree.exists(at); at = tree.next(at, name)) {
      visit(at);
    }
  };
  const auto childOf = [&tree](const Node& parent, const auto& name) {
    return tree.exists(parent) ? tree.child(parent, name) : parent;
  };
  forEach(vast, "Ad", [&](const Node& ad) {
    ++facts.ads;
    const Node inLine = childOf(ad, "InLine");
    forEach(inLine, "Impression",
            [&](const Node& impression) { facts.addText(tree.textLength(impression)); });
    forEach(childOf(inLine, "Creatives"), "Creative", [&](const Node& creative) {
      const Node linear = childOf(creative, "Linear");
      forEach(childOf(linear, "TrackingEvents"), "Tracking", [&](const Node& tracking) {
        facts.addValue(tree.valueLength(tracking, "event"));
        facts.addText(tree.textLength(tracking));
      });
      forEach(childOf(linear, "MediaFiles"), "MediaFile", [&](const Node& file) {
        facts.addValue(tree.valueLength(file, "type"));
        facts.addValue(tree.valueLength(file, "width"));
        facts.addText(tree.textLength(file));
      });
    });
  });
  return facts;
}

}  // namespace tavo::benchmarks
