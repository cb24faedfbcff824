#include "Gtk/Services/Translations.h"

#include <system_error>

#include "Values/Translation.h"

namespace tavo::gtk {

void bindInstalledTranslations(const std::filesystem::path& resources) {
  std::error_code none;
  const auto beside = resources.parent_path() / "locale";
  bindTranslations(std::filesystem::is_directory(beside, none) ? beside.string()
                                                               : TAVO_LOCALE_FOLDER);
}

}  // namespace tavo::gtk
