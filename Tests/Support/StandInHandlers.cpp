#include "Support/StandInHandlers.h"

#include <glib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tavo::test {

namespace {

namespace fs = std::filesystem;

void writeFile(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream{path} << text;
}

}  // namespace

StandInHandlers::StandInHandlers() {
  for (const char* name : {"data", "config", "cache"}) {
    fs::create_directories(folder_.path(name));
    const std::string variable = std::string{"XDG_"} +
                                 (name == std::string{"data"}     ? "DATA"
                                  : name == std::string{"config"} ? "CONFIG"
                                                                  : "CACHE") +
                                 "_HOME";
    g_setenv(variable.c_str(), folder_.path(name).c_str(), TRUE);
  }
  writeFile(folder_.path("handler"),
            "#!/bin/sh\nprintf '%s\\0' \"$@\" >> '" + folder_.path("received") + "'\n");
  fs::permissions(folder_.path("handler"), fs::perms::owner_all);
  writeFile(folder_.path("config/user-dirs.dirs"),
            "XDG_PICTURES_DIR=\"" + picturesFolder() + "\"\n");
  writeRegistrations();
}

void StandInHandlers::writeRegistrations() const {
  std::string types;
  std::string defaults;
  for (const auto& type : types_) {
    types += type + ";";
    defaults += type + "=stand-in.desktop\n";
  }
  writeFile(folder_.path("data/applications/stand-in.desktop"),
            "[Desktop Entry]\nType=Application\nName=Stand-in\nExec=" + folder_.path("handler") +
                " %u\nMimeType=" + types + "\n");
  writeFile(folder_.path("config/mimeapps.list"), "[Default Applications]\n" + defaults);
}

void StandInHandlers::setRegistered(const std::string& type, bool registered) {
  std::erase(types_, type);
  if (registered) types_.push_back(type);
  writeRegistrations();
}

std::vector<std::string> StandInHandlers::received() const {
  std::ifstream file{folder_.path("received"), std::ios::binary};
  const std::string text{std::istreambuf_iterator<char>{file}, {}};
  std::vector<std::string> all;
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\0', start), text.size());
    all.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return all;
}

void StandInHandlers::clear() const { fs::remove(folder_.path("received")); }

}  // namespace tavo::test
