#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

#include <tavo/AppStoreConfiguration.h>
#include <tavo/Url.h>
#include <tavo/WebView.h>

namespace tavo {

// What becomes of a page that the in-app browser is about to load.
struct LoadPage {};
// A page of the store, on a system that has a sheet for it.
struct ShowInStore {
  std::int64_t application = 0;
};
// A page of the store that names no application.
struct NowhereInStore {};
// For another application: a page of the store on a system without a sheet, and what a person has
// chosen on the page that is none, such as a telephone number.
struct LeaveApplication {};
// What is no page and was not chosen by a person: no page starts other applications by itself.
struct NoPage {};

using PageVerdict = std::variant<LoadPage, ShowInStore, NowhereInStore, LeaveApplication, NoPage>;

[[nodiscard]] PageVerdict judgePage(const Navigation& navigation,
                                    const AppStoreConfiguration& store,
                                    std::string_view contractVersion);

}  // namespace tavo
