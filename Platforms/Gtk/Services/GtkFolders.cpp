#include "Gtk/Services/GtkFolders.h"

#include <glib/gstdio.h>

#include "Gtk/ForeignText.h"
#include "Gtk/GPtr.h"

namespace tavo::gtk {

std::string GtkFolders::defaultFolder(const std::string& applicationId) {
  const GText path{g_build_filename(g_get_user_data_dir(), applicationId.c_str(), nullptr)};
  return textOf(path.get());
}

// Named also when it cannot be made: whoever writes there learns why.
std::vector<std::string> GtkFolders::documentFolders() const {
  constexpr int forTheUserAlone = 0700;
  g_mkdir_with_parents(folder_.c_str(), forTheUserAlone);
  return {folder_};
}

}  // namespace tavo::gtk
