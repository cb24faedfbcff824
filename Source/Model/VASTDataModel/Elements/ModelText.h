#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tavo {

// A text of the model; none when the document does not have it. Texts are kept as they stand in the
// document: nothing is trimmed, decoded or converted to a number. They are views into it: the root
// and the ads of the model keep the documents that theirs stand in, and whoever wants to keep a
// text for longer makes a string of it.
using OptionalText = std::optional<std::string_view>;

// The bytes of a document that texts of the model point into.
using DocumentText = std::shared_ptr<const char[]>;

// A list of the model that may be none, which is something else than empty.
template <typename Item>
using OptionalList = std::optional<std::vector<Item>>;

}  // namespace tavo
