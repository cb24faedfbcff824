#include "Gtk/Services/GtkDevice.h"

#include <sys/utsname.h>

#include <algorithm>
#include <array>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"
#include "Values/Text.h"

namespace tavo::gtk {

namespace {

utsname kernel() {
  utsname names{};
  uname(&names);
  return names;
}

// One line of a small file of the kernel's; empty when there is none.
std::string lineOf(const char* path) {
  char* data = nullptr;
  if (g_file_get_contents(path, &data, nullptr, nullptr) == FALSE) return {};
  const GText owned{data};
  return validUtf8(trimmed(textOf(owned.get())));
}

// What firmware says that was never filled in.
bool isPlaceholder(std::string_view product) {
  constexpr std::array<std::string_view, 5> fillers{"To Be Filled By O.E.M.", "System Product Name",
                                                    "Default string", "Not Specified", "None"};
  return std::any_of(fillers.begin(), fillers.end(),
                     [&](std::string_view filler) { return equalsIgnoringCase(product, filler); });
}

std::vector<std::string> environmentLocales() {
  std::vector<std::string> names;
  for (const char* const* name = g_get_language_names(); *name != nullptr; ++name) {
    names.emplace_back(*name);
  }
  return names;
}

}  // namespace

std::string languageTag(const std::string& posixLocale) {
  std::string tag = localeName(posixLocale);
  std::replace(tag.begin(), tag.end(), '_', '-');
  return tag;
}

std::string localeName(const std::string& posixLocale) {
  const std::string name = posixLocale.substr(0, posixLocale.find_first_of(".@"));
  return name == "C" || name == "POSIX" ? std::string{} : name;
}

std::string GtkDevice::model() const {
  for (const char* const path : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"}) {
    std::string product = lineOf(path);
    if (!product.empty() && !isPlaceholder(product)) return product;
  }
  return "Desktop";
}

std::string GtkDevice::hardwareMachine() const { return kernel().machine; }

std::string GtkDevice::systemVersion() const {
  const GText version{g_get_os_info(G_OS_INFO_KEY_VERSION_ID)};
  return version ? textOf(version.get()) : kernel().release;
}

// The environment's list repeats each locale with and without its territory and character set.
std::vector<std::string> GtkDevice::preferredLanguages() const {
  std::vector<std::string> tags;
  for (const auto& name : environmentLocales()) {
    const std::string tag = languageTag(name);
    if (!tag.empty() && std::find(tags.begin(), tags.end(), tag) == tags.end()) tags.push_back(tag);
  }
  if (tags.empty()) tags.emplace_back("en");
  return tags;
}

std::string GtkDevice::localeIdentifier() const {
  const auto names = environmentLocales();
  const std::string first = localeName(names.front());
  return first.empty() ? "en_US" : first;
}

}  // namespace tavo::gtk
