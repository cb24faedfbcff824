#include "Gtk/Services/GtkUserDefaults.h"

#include <glib/gstdio.h>

#include <string_view>
#include <utility>

#include <tavo/Url.h>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"

namespace tavo::gtk {

namespace {

using KeyFile = GOwned<GKeyFile, &g_key_file_unref>;
using GStringList = GOwned<gchar*, &g_strfreev>;

constexpr const char* group = "Defaults";

// Key files give a meaning to these in a key; a value may have any character that can be seen.
constexpr std::string_view keyMarks = " #=[];%";
constexpr std::string_view valueMarks = "%";

std::string escaped(std::string_view bytes, std::string_view marks) {
  std::string text;
  for (const char byte : bytes) {
    const bool plain = g_ascii_isprint(byte) != FALSE && marks.find(byte) == std::string_view::npos;
    if (plain) {
      text += byte;
    } else {
      const GText escape{g_strdup_printf("%%%02X", static_cast<unsigned char>(byte))};
      text += textOf(escape.get());
    }
  }
  return text;
}

}  // namespace

GtkUserDefaults::GtkUserDefaults(std::string path) : path_{std::move(path)}, values_{readFile()} {}

std::string GtkUserDefaults::defaultPath(const std::string& applicationId) {
  const GText path{
      g_build_filename(g_get_user_config_dir(), applicationId.c_str(), "defaults.ini", nullptr)};
  return textOf(path.get());
}

std::optional<std::string> GtkUserDefaults::value(std::string_view key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional{found->second};
}

void GtkUserDefaults::setValue(std::string_view key, std::optional<std::string> value) {
  if (key.empty()) return;  // cannot be written
  const std::string name{key};
  assign(values_, name, value);
  changes_[name] = std::move(value);
}

void GtkUserDefaults::synchronize() {
  if (changes_.empty()) return;
  Values merged = readFile();
  for (const auto& [key, value] : changes_) assign(merged, key, value);
  if (!writeFile(merged)) return;  // tried again with the next change
  values_ = std::move(merged);
  changes_.clear();
}

void GtkUserDefaults::assign(Values& values, const std::string& key,
                             const std::optional<std::string>& value) {
  if (value) {
    values[key] = *value;
  } else {
    values.erase(key);
  }
}

GtkUserDefaults::Values GtkUserDefaults::readFile() const {
  Values values;
  const KeyFile file{g_key_file_new()};
  g_key_file_load_from_file(file.get(), path_.c_str(), G_KEY_FILE_NONE, nullptr);
  const GStringList keys{g_key_file_get_keys(file.get(), group, nullptr, nullptr)};
  for (gchar** key = keys.get(); key != nullptr && *key != nullptr; ++key) {
    const GText value{g_key_file_get_string(file.get(), group, *key, nullptr)};
    if (value) values[percentDecoded(*key)] = percentDecoded(value.get());
  }
  return values;
}

bool GtkUserDefaults::writeFile(const Values& values) const {
  const KeyFile file{g_key_file_new()};
  for (const auto& [key, value] : values) {
    g_key_file_set_string(file.get(), group, escaped(key, keyMarks).c_str(),
                          escaped(value, valueMarks).c_str());
  }
  gsize size = 0;
  const GText text{g_key_file_to_data(file.get(), &size, nullptr)};
  const GText folder{g_path_get_dirname(path_.c_str())};
  g_mkdir_with_parents(folder.get(), 0700);
  return text && g_file_set_contents_full(path_.c_str(), text.get(), static_cast<gssize>(size),
                                          G_FILE_SET_CONTENTS_CONSISTENT, 0600, nullptr) != FALSE;
}

}  // namespace tavo::gtk
