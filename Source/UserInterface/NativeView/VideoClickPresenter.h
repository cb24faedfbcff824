#pragma once

#include <cstdint>

#include "Values/Url.h"

namespace tavo {

// What a video ad needs to show a page or a product above itself. Its owner tells the video view of
// the end with XInAppBrowserClose or productViewControllerDidFinish. Main thread; held weakly.
class VideoClickPresenter {
 public:
  virtual ~VideoClickPresenter() = default;

  // Shows the page in the in-app browser; false when that is not possible now.
  virtual bool presentBrowser(const Url& url) = 0;
  virtual void dismissBrowser() = 0;
  // Shows the store's page of a product.
  virtual void presentStoreProduct(std::int64_t item) = 0;
};

}  // namespace tavo
