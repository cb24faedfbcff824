#pragma once

#include <memory>

#include <tavo/XAdView.h>

namespace tavo {

// A slot that a host keeps for videos. It is a slot like any other.
class XVideoView : public XAdView {
 public:
  [[nodiscard]] static std::shared_ptr<XVideoView> create(const Rect& frame) {
    return std::shared_ptr<XVideoView>{new XVideoView{frame}};
  }

 private:
  explicit XVideoView(const Rect& frame) : XAdView{frame} {}
};

}  // namespace tavo
