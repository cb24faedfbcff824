#pragma once

#include <memory>
#include <string_view>

#include <tavo/Geometry.h>
#include <tavo/Platform.h>

#include "Services/Application.h"

namespace tavo {

class View;

// Questions about the screen as the user holds it, and about what of a view can be seen. Main
// thread only; lengths in points.

// Posted by an interstitial that stands on a screen in landscape, or follows its turn; what stands
// on it fits itself anew. "UIInterfaceOrientation" is the orientation as a number.
inline constexpr std::string_view interstitialOrientationDidChangeNotification =
    "XAdInterstitialOrientationDidChange";

[[nodiscard]] InterfaceOrientation XDeviceInterfaceOrientation(const Platform& platform);

// The application's key window; null when there is none.
[[nodiscard]] std::shared_ptr<Window> XKeyWindow(const Platform& platform);

// 0 while the status bar is hidden.
[[nodiscard]] double XDeviceStatusBarHeight(const Platform& platform);

// The screen's bounds; in landscape the width is the longer side.
[[nodiscard]] Rect XDeviceScreenBounds(const Platform& platform);

// The screen's bounds without the strip of the status bar.
[[nodiscard]] Rect XApplicationFrame(const Platform& platform);

// Pixels per point; 1 where the platform does not tell.
[[nodiscard]] double XDeviceScaleFactor(const Platform& platform);

// Whether the user can see the view: neither the view nor anything above it is hidden, it is in the
// key window, and a part of it lies within that window's bounds.
[[nodiscard]] bool XViewIsVisible(const Platform& platform, const View& view);

// Whether anything above the view is hidden.
[[nodiscard]] bool XViewHasHiddenAncestor(const View& view);

// Whether the key window is above the view; a window is not above itself.
[[nodiscard]] bool XViewIsDescendantOfKeyWindow(const Platform& platform, const View& view);

// Whether the view's frame lies, at least in part, within the key window's bounds.
[[nodiscard]] bool XViewIntersectsKeyWindow(const Platform& platform, const View& view);

}  // namespace tavo
