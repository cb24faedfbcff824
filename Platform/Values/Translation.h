#pragma once

#include <string>
#include <string_view>

namespace tavo {

// Texts that a person sees, in the language of the process. Only these: what developers, logs,
// servers and creatives read stays English. `po/update` finds the texts by the names of these
// functions, so they are called with literals. Any thread.

// The text in the person's language; the text itself where no catalogue has it.
[[nodiscard]] std::string translated(const char* text);
// One of two forms, or of as many as the language has, for `count` things.
[[nodiscard]] std::string translatedPlural(const char* one, const char* many, unsigned long count);

// Marks a text in a table for the catalogue; whoever reads the table has it translated.
[[nodiscard]] constexpr const char* toTranslate(const char* text) { return text; }

// `text` with `value` in the place of its "%1". What is put in is not looked at.
[[nodiscard]] std::string filledIn(std::string text, std::string_view value);

// Takes the library's catalogues from below `folder`: <language>/LC_MESSAGES/corvane-tavo-<major
// version>.mo. For the whole process; the last call counts.
void bindTranslations(const std::string& folder);

}  // namespace tavo
