#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavo {

// A text of the model; none when the document does not have it. Texts are kept as they stand in the
// document: nothing is trimmed, decoded or converted to a number.
using OptionalText = std::optional<std::string>;

// A list of the model that may be none, which is something else than empty.
template <typename Item>
using OptionalList = std::optional<std::vector<Item>>;

// The attributes of one element, name to value. A name that occurs again replaces the earlier
// value. Names and values are views into the document and live as long as it does.
class AttributeMap {
 public:
  AttributeMap() = default;
  AttributeMap(std::initializer_list<std::pair<std::string_view, std::string_view>> attributes)
      : attributes_(attributes) {}

  [[nodiscard]] bool empty() const { return attributes_.empty(); }
  void clear() { attributes_.clear(); }
  void set(std::string_view name, std::string_view value) { attributes_.emplace_back(name, value); }

  // The value under `name`, or none.
  [[nodiscard]] std::optional<std::string_view> operator[](std::string_view name) const;

 private:
  // In the order of the document, replaced values included: an element of a hostile document may
  // have a hundred thousand attributes, and looking for the earlier value at each of them would
  // never end.
  std::vector<std::pair<std::string_view, std::string_view>> attributes_;
};

}  // namespace tavo
