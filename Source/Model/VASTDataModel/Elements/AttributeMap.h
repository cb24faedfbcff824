#pragma once

#include <cstdint>
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
  AttributeMap(std::initializer_list<std::pair<std::string_view, std::string_view>> attributes) {
    for (const auto& [name, value] : attributes) set(name, value);
  }

  [[nodiscard]] bool empty() const { return attributes_.empty(); }
  void clear() {
    attributes_.clear();
    kinds_ = 0;
  }
  void set(std::string_view name, std::string_view value) {
    attributes_.emplace_back(name, value);
    kinds_ |= kindOf(name);
  }

  // The value under `name`, or none.
  [[nodiscard]] std::optional<std::string_view> operator[](std::string_view name) const {
    return (kinds_ & kindOf(name)) != 0 ? find(name) : std::nullopt;
  }

 private:
  // A bit for the look of a name. Most attributes that a model knows are absent from most elements,
  // and the bits of those that are there say so without a look at each.
  [[nodiscard]] static constexpr std::uint64_t kindOf(std::string_view name) {
    const auto first = static_cast<unsigned char>(name.empty() ? '\0' : name.front());
    return std::uint64_t{1} << (first + 5 * name.size()) % 64;
  }
  [[nodiscard]] std::optional<std::string_view> find(std::string_view name) const;

  // In the order of the document, replaced values included: an element of a hostile document may
  // have a hundred thousand attributes, and looking for the earlier value at each of them would
  // never end.
  std::vector<std::pair<std::string_view, std::string_view>> attributes_;
  std::uint64_t kinds_ = 0;
};

}  // namespace tavo
