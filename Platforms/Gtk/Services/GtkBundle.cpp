#include "Gtk/Services/GtkBundle.h"

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"

namespace tavo::gtk {

std::optional<std::string> GtkBundle::pathForResource(std::string_view bundle,
                                                      std::string_view name,
                                                      std::string_view type) const {
  std::string file;
  if (!bundle.empty()) file = std::string{bundle} + ".bundle/";
  file += name;
  if (!type.empty()) file += "." + std::string{type};
  for (const auto& root : roots_) {
    const GText path{g_build_filename(root.c_str(), file.c_str(), nullptr)};
    if (g_file_test(path.get(), G_FILE_TEST_IS_REGULAR) != FALSE) return textOf(path.get());
  }
  return std::nullopt;
}

std::optional<std::string> GtkBundle::contents(const std::string& path) const {
  char* data = nullptr;
  gsize size = 0;
  if (g_file_get_contents(path.c_str(), &data, &size, nullptr) == FALSE) return std::nullopt;
  const GText owned{data};
  return std::string{data, size};
}

}  // namespace tavo::gtk
