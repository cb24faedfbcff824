#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Geometry.h>
#include <tavo/InterfaceOrientation.h>
#include <tavo/Url.h>

namespace tavo {

class Window;

// Posted by the platform through the runtime's notification centre, on the main thread.
namespace notifications {
inline constexpr std::string_view didEnterBackground = "ApplicationDidEnterBackground";
inline constexpr std::string_view willEnterForeground = "ApplicationWillEnterForeground";
inline constexpr std::string_view didReceiveMemoryWarning = "ApplicationDidReceiveMemoryWarning";
inline constexpr std::string_view deviceOrientationDidChange = "DeviceOrientationDidChange";
// The application's window has a new size, in whatever shape.
inline constexpr std::string_view windowSizeDidChange = "WindowSizeDidChange";
inline constexpr std::string_view screenLocked = "com.apple.springboard.lockcomplete";
}  // namespace notifications

enum class StatusBarAnimation { none, fade };

// The host application as the system sees it. Main thread only.
class Application {
 public:
  virtual ~Application() = default;

  // The windows that exist, oldest first, and the one that has the keyboard (or had it last); null
  // when there is none.
  [[nodiscard]] virtual std::vector<std::shared_ptr<Window>> windows() const = 0;
  [[nodiscard]] virtual std::shared_ptr<Window> keyWindow() const = 0;

  [[nodiscard]] virtual InterfaceOrientation statusBarOrientation() const = 0;

  // The strip that the system keeps for itself. On a desktop the host's window has none: the frame
  // is empty, and hidden is only remembered.
  [[nodiscard]] virtual Rect statusBarFrame() const = 0;
  [[nodiscard]] virtual bool isStatusBarHidden() const = 0;
  virtual void setStatusBarHidden(bool hidden, StatusBarAnimation animation) = 0;

  // Whether some application handles the URL's scheme. Answers quickly and opens nothing.
  [[nodiscard]] virtual bool canOpenUrl(const Url& url) const = 0;
  // Hands the URL to that application; returns whether there was one to hand it to.
  virtual bool openUrl(const Url& url) = 0;

  // The host's own translation of `key` into the user's language; the key itself where the host has
  // none.
  [[nodiscard]] virtual std::string localizedString(std::string_view key) const = 0;
};

}  // namespace tavo
