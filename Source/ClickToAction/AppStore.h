#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/Url.h>

#include "Services/HttpClient.h"

namespace tavo {

// Where applications are sold. A host whose users have another store changes this before the first
// ad.
struct AppStoreConfiguration {
  // The one record of the process, made on the first call. Main thread only.
  [[nodiscard]] static AppStoreConfiguration& sharedInstance();

  // The hosts of the store's web front, in lower case.
  std::array<std::string, 2> hosts{"itunes.apple.com", "apps.apple.com"};
  // The page of an application is this text followed by the application's number.
  std::string productPagePrefix = "https://apps.apple.com/app/id";
};

// True when the URL's host is one of the store's, in any letter case.
[[nodiscard]] bool isAppStoreHost(const Url& url);
// True when the URL's host ends with one of them, as "www.store.example" and "mystore.example" do.
[[nodiscard]] bool endsWithAppStoreHost(const Url& url);

// The number of the application that a store's URL is about, from its first "/id"; none without
// one.
[[nodiscard]] std::optional<std::int64_t> applicationIdentifier(const Url& url);

// The application at the end of a click's way, looked up by fetching its URL: none when nothing has
// arrived (an answer whose body was not read has), for an ordinary page, for a page of the store
// that names no application (which is logged), and on systems without a sheet for it.
[[nodiscard]] std::optional<std::int64_t> storeApplication(const HttpResult& result);

// The page of an application in the store.
[[nodiscard]] Url productPage(std::int64_t identifier);

// The systems that have a sheet for store pages: version 6 and later.
[[nodiscard]] bool hasStoreSheet(std::string_view systemVersion);

}  // namespace tavo
