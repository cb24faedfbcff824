#pragma once

#include <filesystem>

namespace tavo::gtk {

// Takes the library's catalogues from where they were installed, which is beside the folder of its
// resources and moves with it, or from the build.
void bindInstalledTranslations(const std::filesystem::path& resources);

}  // namespace tavo::gtk
