#pragma once

#include <array>
#include <string>

#include <tavo/Export.h>

namespace tavo {

// Where applications are sold. Clicks that lead to one of these hosts open the store's sheet
// instead of a page. A host application whose users have another store changes this before its
// first ad; every click reads it anew. Main thread only.
struct TAVO_EXPORT AppStoreConfiguration {
  // The record of the current runtime, made on the first call and gone with the runtime.
  [[nodiscard]] static AppStoreConfiguration& sharedInstance();

  // The hosts of the store's web front, in lower case. An empty one matches nothing.
  std::array<std::string, 2> hosts{"itunes.apple.com", "apps.apple.com"};
  // The page of an application is this text followed by the application's number.
  std::string productPagePrefix = "https://apps.apple.com/app/id";
};

}  // namespace tavo
