#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tavo/Color.h>
#include <tavo/Image.h>
#include <tavo/XBrowserConfiguration.h>

namespace tavo {

// The buttons of the in-app browser, by their numbers in the settings.
enum class BrowserButton : unsigned { close = 0, back = 1, forward = 2, reload = 3, action = 4 };
inline constexpr BrowserButton browserButtons[] = {BrowserButton::close, BrowserButton::back,
                                                   BrowserButton::forward, BrowserButton::reload,
                                                   BrowserButton::action};

// Whether the settings show a button.
[[nodiscard]] bool isButtonShown(const XBrowserConfiguration& settings, BrowserButton button);

// The entries of the settings that give a button a picture of the host's, in their order.
[[nodiscard]] std::vector<XBrowserConfiguration::ToolbarDetail> hostImages(
    const XBrowserConfiguration& settings, BrowserButton button);

// The resource with the library's own picture for a button, and what the person's language calls
// the button.
[[nodiscard]] std::string_view builtInImageName(BrowserButton button);
[[nodiscard]] std::string buttonLabel(BrowserButton button);

// A picture of one colour in another: the shape stays, as its alpha has it.
[[nodiscard]] Image tinted(const Image& shape, const Color& color);

}  // namespace tavo
