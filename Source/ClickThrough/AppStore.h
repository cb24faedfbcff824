#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <tavo/AppStoreConfiguration.h>
#include <tavo/Url.h>

#include "Services/HttpClient.h"

namespace tavo {

// True when the URL's host is one of the store's, in any letter case.
[[nodiscard]] bool isAppStoreHost(const Url& url, const AppStoreConfiguration& store);
// True when the URL's host ends with one of them, as "www.store.example" and "mystore.example" do.
[[nodiscard]] bool endsWithAppStoreHost(const Url& url, const AppStoreConfiguration& store);

// The number of the application that a store's URL is about, from its first "/id"; none without
// one.
[[nodiscard]] std::optional<std::int64_t> applicationIdentifier(const Url& url);

// The application at the end of a click's way, looked up by fetching its URL: none when nothing has
// arrived (an answer whose body was not read has), for an ordinary page, for a page of the store
// that names no application (which is logged), and on systems without a sheet for it.
[[nodiscard]] std::optional<std::int64_t> storeApplication(const HttpResult& result,
                                                           const AppStoreConfiguration& store,
                                                           std::string_view contractVersion);

// The page of an application in the store.
[[nodiscard]] Url productPage(std::int64_t identifier, const AppStoreConfiguration& store);

// The systems that have a sheet for store pages: version 6 and later.
[[nodiscard]] bool hasStoreSheet(std::string_view contractVersion);

}  // namespace tavo
