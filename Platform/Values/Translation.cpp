#include "Values/Translation.h"

#include <libintl.h>

#include <utility>

namespace tavo {

namespace {
constexpr const char* domain = TAVO_TRANSLATION_DOMAIN;
}  // namespace

std::string translated(const char* text) { return dgettext(domain, text); }

std::string translatedPlural(const char* one, const char* many, unsigned long count) {
  return dngettext(domain, one, many, count);
}

std::string filledIn(std::string text, std::string_view value) {
  constexpr std::string_view place = "%1";
  if (const auto at = text.find(place); at != std::string::npos) {
    text.replace(at, place.size(), value);
  }
  return text;
}

void bindTranslations(const std::string& folder) {
  bindtextdomain(domain, folder.c_str());
  bind_textdomain_codeset(domain, "UTF-8");
}

}  // namespace tavo
