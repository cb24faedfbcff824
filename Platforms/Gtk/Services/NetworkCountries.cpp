#include "Gtk/Services/NetworkCountries.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <map>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Gtk/Guarded.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

constexpr std::size_t mostBytes = std::size_t{8} * 1024 * 1024;

struct Count {
  std::string_view code;
  std::string country;                    // whose networks come now
  std::map<std::string, int> networks{};  // with the code, by country
};

std::string attribute(const char** names, const char** values, std::string_view wanted) {
  for (; *names != nullptr; ++names, ++values) {
    if (*names == wanted) return textOf(*values);
  }
  return {};
}

bool isCountry(std::string_view text) {
  return text.size() == 2 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

void elementStarts(GMarkupParseContext* /*context*/, const char* element, const char** names,
                   const char** values, gpointer into, GError** /*failure*/) {
  guarded([&] {
    auto& count = *static_cast<Count*>(into);
    const std::string_view name = element;
    if (name == "country") count.country = lowerCased(attribute(names, values, "code"));
    if (name == "network-id" && isCountry(count.country) &&
        attribute(names, values, "mcc") == count.code) {
      ++count.networks[count.country];
    }
  });
}

// Whether all of the file could be read.
bool walk(const std::string& file, Count& count) {
  constexpr GMarkupParser parser{&elementStarts, nullptr, nullptr, nullptr, nullptr};
  using Context = GOwned<GMarkupParseContext, &g_markup_parse_context_free>;
  const Context context{
      g_markup_parse_context_new(&parser, static_cast<GMarkupParseFlags>(0), &count, nullptr)};
  std::ifstream input{file, std::ios::binary};
  std::array<char, std::size_t{16} * 1024> block{};
  std::size_t total = 0;
  while (input.read(block.data(), block.size()), input.gcount() > 0) {
    total += static_cast<std::size_t>(input.gcount());
    if (total > mostBytes || g_markup_parse_context_parse(context.get(), block.data(),
                                                          input.gcount(), nullptr) == FALSE) {
      return false;
    }
  }
  return total > 0 && g_markup_parse_context_end_parse(context.get(), nullptr) != FALSE;
}

}  // namespace

std::optional<std::string> countryOfNetworks(const std::string& file, std::string_view code) {
  Count count{.code = code, .country = {}};
  if (!walk(file, count) || count.networks.empty()) return std::nullopt;
  const auto most = std::max_element(
      count.networks.begin(), count.networks.end(),
      [](const auto& left, const auto& right) { return left.second < right.second; });
  return most->first;
}

}  // namespace tavo::gtk
