#pragma once

#include <string>
#include <string_view>

namespace tavo {

// Appends `queryString` with `keywords` merged in to `text`. Both are pieces joined by "&"; an
// empty text is one empty piece. Keywords that equal a piece of the query string are dropped, the
// others follow it; then every piece that occurs more than once moves to the end, as one copy, in
// the order in which such pieces first occurred.
void appendMergedQuery(std::string& text, std::string_view keywords, std::string_view queryString);

}  // namespace tavo
