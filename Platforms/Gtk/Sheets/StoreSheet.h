#pragma once

#include <functional>
#include <memory>

#include <tavo/ViewController.h>
#include <tavo/WebView.h>

#include "Scene/Toolbar.h"
#include "Services/Composers.h"
#include "Services/WebViewFactory.h"

namespace tavo::gtk {

// The page of an application in the store, over the whole window, with a button that ends it.
class StoreSheet : public ViewController {
 public:
  StoreSheet(const StoreProduct& product, WebViewFactory& webViews, std::function<void()> finished);

  bool cancelOperation() override;

 protected:
  [[nodiscard]] std::shared_ptr<View> loadView() override;

 private:
  void finish();

  std::shared_ptr<WebView> page_;
  std::function<void()> finished_;
};

}  // namespace tavo::gtk
