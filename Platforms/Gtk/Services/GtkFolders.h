#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Services/Folders.h"

namespace tavo::gtk {

// The application's own folder among the user's data: what is kept there is for programs, and does
// not belong between the letters and pictures of the user's documents.
class GtkFolders : public Folders {
 public:
  explicit GtkFolders(std::string folder) : folder_{std::move(folder)} {}

  // "<user data dir>/<application>".
  [[nodiscard]] static std::string defaultFolder(const std::string& applicationId);

  [[nodiscard]] std::vector<std::string> documentFolders() const override;

 private:
  std::string folder_;
};

}  // namespace tavo::gtk
