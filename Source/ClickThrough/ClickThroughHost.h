#pragma once

#include <memory>

#include <tavo/Url.h>
#include <tavo/XAdSlotConfiguration.h>

namespace tavo {

// What a renderer needs of the view that it stands in, to follow a click. Renderers hold it weakly.
class ClickThroughHost {
 public:
  virtual ~ClickThroughHost() = default;

  // Null once the view has let go of its settings.
  [[nodiscard]] virtual std::shared_ptr<XAdSlotConfiguration> slotConfiguration() const = 0;
  // Follows a click to a web page, inside or outside the application. Renderer and view may be
  // gone afterwards.
  virtual void openUrlInBrowser(const Url& url) = 0;
};

}  // namespace tavo
