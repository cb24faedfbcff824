#include "Gtk/Web/StatementBatch.h"

#include <string_view>
#include <utility>

namespace tavo::gtk {

namespace {
bool isNameLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '$';
}
}  // namespace

bool StatementBatch::takes(const std::string& statement) {
  const std::string_view text{statement};
  bool hasDot = false;  // so that no keyword is taken for a function
  std::size_t end = 0;
  while (end < text.size() && (isNameLetter(text[end]) || (end > 0 && text[end] == '.'))) {
    hasDot = hasDot || text[end] == '.';
    ++end;
  }
  return hasDot && end < text.size() && text[end] == '(' && text.ends_with(");") &&
         text.find_first_of("\n\r`") == std::string_view::npos;
}

void StatementBatch::add(const std::string& statement) {
  text_ += "try{" + statement + "\n}catch(e){}\n";
}

std::string StatementBatch::take() { return std::exchange(text_, {}); }

}  // namespace tavo::gtk
