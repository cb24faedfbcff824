#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <tavo/XBrowserConfiguration.h>

#include "Runtime/Environment.h"
#include "Scene/Toolbar.h"
#include "UserInterface/WebView/InAppBrowser/AddressLine.h"
#include "UserInterface/WebView/InAppBrowser/BrowserButtons.h"

namespace tavo {

// The in-app browser's strip of buttons, dressed and placed as the application's settings want it.
// Main thread only.
class BrowserToolbar : public Toolbar {
 public:
  using Pressed = std::function<void(BrowserButton)>;

  BrowserToolbar(std::shared_ptr<Environment> environment,
                 std::shared_ptr<const XBrowserConfiguration> settings, Pressed pressed);

  // The buttons that the settings show, in their order; back and forward wait for a history.
  [[nodiscard]] std::vector<std::shared_ptr<Button>> makeItems();

  // Null where the settings hide it.
  [[nodiscard]] const std::shared_ptr<Button>& backButton() const { return backButton_; }
  [[nodiscard]] const std::shared_ptr<Button>& forwardButton() const { return forwardButton_; }
  void setHistory(bool behind, bool ahead) const;

  [[nodiscard]] bool isOnTop() const { return settings_->toolbarPosition == 0; }
  // Whose page is in front, in a line below the buttons.
  void showPage(const PageSign& sign) { address_->show(sign); }

  // Puts the strip at its edge of a view of this size.
  void place(Size all);

 protected:
  void layoutSubviews() override;

 private:
  // What is drawn on the strip.
  [[nodiscard]] Color ink() const;
  [[nodiscard]] std::shared_ptr<Button> makeButton(BrowserButton number);

  std::shared_ptr<Environment> environment_;
  std::shared_ptr<const XBrowserConfiguration> settings_;
  Pressed pressed_;
  std::shared_ptr<AddressLine> address_;
  std::shared_ptr<Button> backButton_;
  std::shared_ptr<Button> forwardButton_;
};

}  // namespace tavo
