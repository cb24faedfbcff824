#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

#include <tavo/AppStoreConfiguration.h>
#include <tavo/Url.h>

namespace tavo {

// What becomes of a page that the in-app browser is about to load.
struct LoadPage {};
// A page of the store, on a system that has a sheet for it.
struct ShowInStore {
  std::int64_t application = 0;
};
// A page of the store that names no application.
struct NowhereInStore {};
// A page of the store, on a system without a sheet.
struct LeaveApplication {};

using PageVerdict = std::variant<LoadPage, ShowInStore, NowhereInStore, LeaveApplication>;

[[nodiscard]] PageVerdict judgePage(const Url& url, const AppStoreConfiguration& store,
                                    std::string_view systemVersion);

}  // namespace tavo
