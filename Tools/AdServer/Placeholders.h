#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tavo::adserver {

// The value of a name, or none when the name is unknown.
using ValueOfName = std::function<std::optional<std::string>(std::string_view name)>;

// The text with each "${name}" replaced by its value. An unknown name stays as it is: creatives
// contain template literals of their own, and those belong to the page.
[[nodiscard]] std::string fillPlaceholders(std::string_view text, const ValueOfName& valueOf);

// The same with the names that every text of a campaign may use: ${server}, the server's base URL,
// ${campaign}, the campaign's name, and ${hop}, one more than the hop of the request, so that a
// document can name itself anew for ever.
[[nodiscard]] std::string fillServerAndCampaign(std::string_view text, std::string_view server,
                                                std::string_view campaign, int hop = 0);

}  // namespace tavo::adserver
